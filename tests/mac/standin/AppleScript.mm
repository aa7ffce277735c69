#import <Foundation/Foundation.h>

#include "tests/mac/standin/AppleScriptControl.h"
#include "tests/mac/standin/StandIn.h"

using StandIn::Misuse;

NSString* const NSAppleScriptErrorMessage = @"NSAppleScriptErrorMessage";

namespace {

NSString* Text() {
  return AppleScriptControl::text ? [NSString stringWithUTF8String:AppleScriptControl::text->c_str()] : nil;
}

}  // namespace

@implementation NSAppleEventDescriptor

- (NSString*)stringValue {
  return Text();
}

@end

@implementation NSAppleScript

- (instancetype)initWithSource:(NSString*)source {
  if (source == nil) Misuse("nil for the source");
  AppleScriptControl::source = [source UTF8String];
  return [super init];
}

- (NSAppleEventDescriptor*)executeAndReturnError:(NSDictionary**)error {
  if (AppleScriptControl::succeeds) return [[[NSAppleEventDescriptor alloc] init] autorelease];
  if (error != nullptr) *error = [NSDictionary dictionaryWithObjectsAndKeys:Text(), NSAppleScriptErrorMessage, nil];
  return nil;
}

@end
