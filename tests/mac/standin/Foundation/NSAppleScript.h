// Scripts that end as AppleScriptControl says. Declared as in Apple's headers, but under a name that cannot meet the
// class inside GNUstep.
#pragma once

#import <Foundation/NSAppleEventDescriptor.h>
#import <Foundation/NSObject.h>

@class NSDictionary, NSString;

#define NSAppleScript StandInAppleScript

#pragma clang assume_nonnull begin

extern NSString* const NSAppleScriptErrorMessage;

@interface NSAppleScript : NSObject
- (instancetype _Nullable)initWithSource:(NSString*)source;
- (NSAppleEventDescriptor* _Nullable)executeAndReturnError:(NSDictionary* _Nullable* _Nullable)error;
@end

#pragma clang assume_nonnull end
