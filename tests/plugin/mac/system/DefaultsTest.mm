// The settings in the user defaults of the test program, which has a domain of its own.
#import <Foundation/Foundation.h>

#include "plugin/core/PrefsFixture.h"
#include "support/Process.h"

namespace {

NSString* const kDomain = @"com.varnix.tests";

void RemoveSettings() {
  @autoreleasepool {
    [[NSUserDefaults standardUserDefaults] removePersistentDomainForName:kDomain];
    [NSUserDefaults resetStandardUserDefaults];
  }
}

struct LeaveNothingBehind : testing::Environment {
  void TearDown() override { RemoveSettings(); }
};
[[maybe_unused]] auto* const g_leaveNothingBehind = testing::AddGlobalTestEnvironment(new LeaveNothingBehind);

}  // namespace

// The settings have a fixed place, so they are removed instead.
void MoveHome(const std::filesystem::path&) {
  @autoreleasepool {
    ASSERT_TRUE([[[NSBundle mainBundle] bundleIdentifier] isEqualToString:kDomain]) << "these are another program's";
  }
  RemoveSettings();
}

// Foundation does not survive a fork. New defaults read what the system has stored.
void InAnotherRun(const std::function<void()>& body) {
  body();
  [NSUserDefaults resetStandardUserDefaults];
}

namespace {

TEST_F(PrefsTest, AnotherProgramFindsWhatWasSaved) {
  Save("https://varnix.example", "key 1");
  for (const auto& [key, value] :
       {std::pair{Prefs::kBaseUrlKey, "https://varnix.example\n"}, {Prefs::kLicenseKeyKey, "key 1\n"}}) {
    EXPECT_EQ(RunProcess({"/usr/bin/defaults", "read", [kDomain UTF8String], key}).output, value);
  }
}

TEST_F(PrefsTest, ADefaultOfAnotherTypeLoadsAsAnEmptyText) {
  for (NSObject* value in @[ @[ @"a" ], @{@"a" : @"b"}, [NSData dataWithBytes:"a" length:1] ]) {
    Save("url", "key");
    [[NSUserDefaults standardUserDefaults] setObject:value forKey:@(Prefs::kLicenseKeyKey)];
    ExpectStored("url", "");
  }
}

}  // namespace
