// A test's hold on the stand-ins of the system's interfaces. A call that the real system would not survive ends the
// test.
#pragma once

#include <atomic>
#include <optional>
#include <string>

namespace StandIn {

[[noreturn]] void Misuse(const std::string& what);

/// Foundation's objects alive, less those at the first call; autoreleased ones count until their pool is drained.
int FoundationObjects();

/// How many of them a call of `body` leaves alive. Two calls come before it, from which the runtime keeps some objects.
template <typename Body>
int ObjectsLeftBy(Body body) {
  FoundationObjects();
  body();
  body();
  const int before = FoundationObjects();
  body();
  return FoundationObjects() - before;
}

/// AppKit raises at everything. What else befalls the pasteboard is FakePasteboard::Current()'s, for which Core
/// Foundation refuses "CFString" and "CFData" too.
inline bool pasteboardServerIsGone = false;

/// What the URL session does. What transfers bring is FakeUrlLayer::Current()'s.
enum class Mood {
  kWilling,
  kMakesNoTask,
  kRaises,    ///< when asked for a task
  kIsNotHttp  ///< answers with a response of another protocol
};
inline Mood mood = Mood::kWilling;
inline std::atomic<int> semaphores = 0;  // alive
inline double timeoutInterval = 0;       // of the last request
inline unsigned long cachePolicy = 0;    // of the last request

/// From here on NSURL has what came with macOS 14, as in a host that was built with its SDK: a method that refuses
/// invalid characters, and one that encodes them.
void UpgradeToMacOS14();

/// The script that was run last; how scripts end: with a value, or else an error; and the text of that, if it has one.
inline std::string scriptSource;
inline bool scriptSucceeds = true;
inline std::optional<std::string> scriptText;

}  // namespace StandIn
