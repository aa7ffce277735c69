// Scripts that end as StandIn says, and their values. Declared as in Apple's headers, but under names that
// cannot meet the classes inside GNUstep.
#pragma once

#import <Foundation/NSObject.h>

@class NSDictionary, NSString;

#define NSAppleEventDescriptor StandInAppleEventDescriptor
#define NSAppleScript StandInAppleScript

extern NSString* const NSAppleScriptErrorMessage;

@interface NSAppleEventDescriptor : NSObject
- (NSString*)stringValue;
@end

@interface NSAppleScript : NSObject
- (instancetype)initWithSource:(NSString*)source;
- (NSAppleEventDescriptor*)executeAndReturnError:(NSDictionary**)error;
@end
