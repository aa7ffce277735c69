// AppleScript inside the FileMaker process. Manual retain and release.
#include "host/AppleScript.h"

#import <Foundation/Foundation.h>

bool AppleScript::Run(const std::string& source, std::string& result, std::string& error) {
  @autoreleasepool {
    NSString* text = [NSString stringWithUTF8String:source.c_str()];  // nil when it is not UTF-8
    NSDictionary* details = nil;
    NSAppleEventDescriptor* value = nil;
    if (text != nil) {
      NSAppleScript* script = [[[NSAppleScript alloc] initWithSource:text] autorelease];
      value = [script executeAndReturnError:&details];
    }
    if (value == nil) {
      const char* message = [[details objectForKey:NSAppleScriptErrorMessage] UTF8String];
      error = std::string(kErrorStart) + (message == nullptr ? "Unknown AppleScript error" : message);
      return false;
    }
    const char* valueText = [[value stringValue] UTF8String];
    result = valueText == nullptr ? "" : valueText;
    return true;
  }
}
