// System notifications for the user.
#pragma once

#include <string>

/// Shows `message` under `title` (UTF-8) and returns at once. Failures are ignored. Any thread.
void Notify(const std::string& title, const std::string& message);
