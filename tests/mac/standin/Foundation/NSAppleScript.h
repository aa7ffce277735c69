// Scripts that end as AppleScriptControl says, and their values. Declared as in Apple's headers, but under names that
// cannot meet the classes inside GNUstep.
#pragma once

#import <Foundation/NSObject.h>

@class NSDictionary, NSString;

#define NSAppleEventDescriptor StandInAppleEventDescriptor
#define NSAppleScript StandInAppleScript

#pragma clang assume_nonnull begin

extern NSString* const NSAppleScriptErrorMessage;

@interface NSAppleEventDescriptor : NSObject
- (NSString* _Nullable)stringValue;
@end

@interface NSAppleScript : NSObject
- (instancetype _Nullable)initWithSource:(NSString*)source;
- (NSAppleEventDescriptor* _Nullable)executeAndReturnError:(NSDictionary* _Nullable* _Nullable)error;
@end

#pragma clang assume_nonnull end
