// System calls that a test can make fail or watch. The linker's --wrap leads the program's calls here.
#pragma once

#include <functional>
#include <string>

namespace system_calls {

/// Called before the call named so, with its descriptor or its paths, when set. Anything but 0 is the error that the
/// call then fails with instead of being carried out.
inline std::function<int(int file)> beforeRead;
inline std::function<int(int file)> beforeFsync;
inline std::function<int(const std::string& from, const std::string& to)> beforeRename;

/// The size that fstat() reports of every file, unless negative.
inline long long reportedSize = -1;

/// The home that the password file gives every user, unless empty.
inline std::string passwdHome;

}  // namespace system_calls
