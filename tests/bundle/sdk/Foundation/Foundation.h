// The whole of this Foundation.
#pragma once

#import <Foundation/NSObject.h>

#import <Foundation/NSAppleScript.h>
#import <Foundation/NSURLSession.h>
