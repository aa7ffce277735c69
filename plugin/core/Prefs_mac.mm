// The settings in the standard user defaults of the FileMaker process. Manual retain and release.
#include "core/Prefs.h"

#import <Foundation/Foundation.h>

namespace {

void Save(const char* key, const char* value) {
  @autoreleasepool {
    NSString* name = [NSString stringWithUTF8String:key];
    NSString* text = [NSString stringWithUTF8String:value];
    if (name == nil || text == nil) return;  // not UTF-8; storing nil would remove the old text
    NSUserDefaults* defaults = [NSUserDefaults standardUserDefaults];
    [defaults setObject:text forKey:name];
    [defaults synchronize];
  }
}

std::string Load(const char* key) {
  @autoreleasepool {
    NSString* name = [NSString stringWithUTF8String:key];
    if (name == nil) return "";
    const char* utf8 = [[[NSUserDefaults standardUserDefaults] stringForKey:name] UTF8String];
    return utf8 == nullptr ? "" : utf8;
  }
}

}  // namespace

void Prefs::SaveBaseUrl(const std::string& url) { Save(kBaseUrlKey, url.c_str()); }
void Prefs::SaveLicenseKey(const std::string& key) { Save(kLicenseKeyKey, key.c_str()); }

std::string Prefs::LoadBaseUrl() { return Load(kBaseUrlKey); }
std::string Prefs::LoadLicenseKey() { return Load(kLicenseKeyKey); }
