// The AppleScript text that shows a notification.
#pragma once

#include <string>

/// The script, without a line end of its own. Inside it, double quotes of the texts have become apostrophes, so that a
/// text cannot end its literal, and backslashes are doubled; line breaks are left.
std::string NotificationScript(const std::string& title, const std::string& message);
