// The AppleScript text that shows a notification.
#pragma once

#include <string>

/// The script, without a final line ending; all texts are UTF-8. Double quotes in the texts become apostrophes, so that
/// a text cannot end its literal, and backslashes are doubled; line breaks stay. Any thread.
std::string NotificationScript(const std::string& title, const std::string& message);
