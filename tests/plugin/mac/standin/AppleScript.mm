#import <Foundation/Foundation.h>

#include "plugin/mac/standin/StandIn.h"

NSString* const NSAppleScriptErrorMessage = @"NSAppleScriptErrorMessage";

@implementation NSAppleEventDescriptor

// The first literal of the script.
- (NSString*)stringValue {
  NSArray* parts = [[NSString stringWithUTF8String:StandIn::scriptSource.c_str()] componentsSeparatedByString:@"\""];
  return [parts count] > 1 ? [parts objectAtIndex:1] : nil;
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
  const bool raises = StandIn::scriptSource.starts_with("error ");
  if (!raises && StandIn::scriptSource != "not a script") return value;
  *error = raises ? @{NSAppleScriptErrorMessage : [value stringValue]} : @{};
  return nil;
}

@end
