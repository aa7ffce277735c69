// The value of a script. Declared as in Apple's headers, but under a name that cannot meet the class inside GNUstep.
#pragma once

#import <Foundation/NSObject.h>

@class NSString;

#define NSAppleEventDescriptor StandInAppleEventDescriptor

@interface NSAppleEventDescriptor : NSObject
- (NSString* _Nullable)stringValue;
@end
