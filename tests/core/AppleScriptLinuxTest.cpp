#include <gtest/gtest.h>

#include "host/AppleScript.h"

TEST(AppleScript, FailsWithAReasonWhereThereIsNone) {
  std::string name = "old name";
  std::string error;
  EXPECT_FALSE(AppleScript::GetFrontDocumentName(name, error));
  EXPECT_EQ(name, "old name");
  EXPECT_EQ(error, "ERROR (AppleScript): AppleScript is a part of macOS.");
}
