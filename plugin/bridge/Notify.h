// Notifications of the system to the user.
#pragma once

#include <string>

/// Shows `message` under `title` (UTF-8) without waiting; nothing happens where that is not possible. Any thread.
void Notify(const std::string& title, const std::string& message);
