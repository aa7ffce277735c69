#import <Foundation/Foundation.h>

#include "plugin/mac/standin/StandIn.h"

NSString* const NSAppleScriptErrorMessage = @"NSAppleScriptErrorMessage";

@implementation NSAppleEventDescriptor

- (NSString*)stringValue {
  return StandIn::scriptText ? [NSString stringWithUTF8String:StandIn::scriptText->c_str()] : nil;
}

@end

@implementation NSAppleScript

- (instancetype)initWithSource:(NSString*)source {
  if (source == nil) StandIn::Misuse("nil for the source");
  StandIn::scriptSource = [source UTF8String];
  return [super init];
}

- (NSAppleEventDescriptor*)executeAndReturnError:(NSDictionary**)error {
  NSAppleEventDescriptor* value = [[[NSAppleEventDescriptor alloc] init] autorelease];
  if (StandIn::scriptSucceeds) return value;
  *error = [NSDictionary dictionaryWithObjectsAndKeys:[value stringValue], NSAppleScriptErrorMessage, nil];
  return nil;
}

@end
