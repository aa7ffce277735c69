// AppleScript in the process of the test, the system's or a stand-in of it. No script addresses another program.
#include "host/AppleScript.h"

#include <gtest/gtest.h>

namespace {

TEST(AppleScript, ReportsHowAScriptEnded) {
  const struct {
    std::string source, result, error;
  } cases[] = {
      {"return \"Größe\"", "Größe", "old error"},
      {"return", "", "old error"},
      {"error \"verweigert – 1743\"", "old result", "ERROR (AppleScript): verweigert – 1743"},
      {"\xFF", "old result", "ERROR (AppleScript): Unknown AppleScript error"},
  };
  for (const auto& [source, expectedResult, expectedError] : cases) {
    std::string result = "old result", error = "old error";
    EXPECT_EQ(AppleScript::Run(source, result, error), expectedError == "old error") << source;
    EXPECT_EQ(result, expectedResult) << source;
    EXPECT_EQ(error, expectedError) << source;
  }
  std::string result, error;
  EXPECT_FALSE(AppleScript::Run("not a script", result, error));
  EXPECT_TRUE(error.starts_with("ERROR (AppleScript): ") && error.size() > 21) << error;
}

}  // namespace
