// The script of a notification on macOS.
#include "bridge/NotificationScript.h"

#include <gtest/gtest.h>

namespace {

TEST(NotificationScript, QuotesSoThatNoTextCanEndItsLiteral) {
  EXPECT_EQ(NotificationScript("Varnix — \"Failed\"", "\"Sales\"\n\\ and \\\" and 'x' $(x) `x`"),
            "display notification \"'Sales'\n\\\\ and \\\\' and 'x' $(x) `x`\" with title \"Varnix — 'Failed'\"");
}

}  // namespace
