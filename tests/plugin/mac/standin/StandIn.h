// How tests control the stand-ins for the system's interfaces. A call that would crash with the real system ends the
// test program.
#pragma once

#include <atomic>
#include <string>

namespace StandIn {

[[noreturn]] void Misuse(const std::string& what);

/// The number of Foundation objects alive that were created since the first call. Autoreleased objects count until
/// their pool is drained.
int FoundationObjects();

/// How many of them a call of `body` leaves alive. It is called twice before, because the runtime keeps some objects.
template <typename Body>
int ObjectsLeftBy(Body body) {
  FoundationObjects();
  body();
  body();
  const int before = FoundationObjects();
  body();
  return FoundationObjects() - before;
}

/// AppKit raises an exception in every call. All else about the pasteboard is up to FakePasteboard::Current(), which
/// can also make Core Foundation refuse "CFString" and "CFData".
inline bool pasteboardServerIsGone = false;

/// How the URL session behaves. The results of transfers come from FakeUrlLayer::Current().
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

/// The last script that was run. Its result is its first literal: a value, or after "error " the message of an error.
inline std::string scriptSource;

}  // namespace StandIn
