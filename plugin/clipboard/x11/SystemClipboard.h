// The clipboard as the whole process sees it, from one operation to the next: on an X server while one can be reached,
// else inside the process. FileMaker's main thread only.
#pragma once

#include <sys/types.h>

#include <chrono>
#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

#include "clipboard/PasteboardContent.h"
#include "clipboard/x11/Session.h"

namespace x11 {

/// How long a server that could not be reached, or was lost, is left alone.
inline constexpr std::int64_t kReconnectPauseMs = 5000;

class SystemClipboard {
 public:
  /// Created at the first use, and destroyed when the plug-in is unloaded or the process exits.
  static SystemClipboard& Shared();

  SystemClipboard(const SystemClipboard&) = delete;
  SystemClipboard& operator=(const SystemClipboard&) = delete;

  /// See Pasteboard. Nothing on a server that does not report who takes the clipboard.
  std::optional<std::uint64_t> ChangeCount();

  /// The content of the clipboard, valid until the next call; null when another program or none owns the clipboard.
  const PasteboardContent* OwnContent();
  /// What another program has, within the ReadingLimit; see SelectionReader.
  std::vector<Target> Targets();
  std::optional<Property> Read(xcb_atom_t target);

  /// Takes the clipboard from its owner. Publish must follow if this returns true; false when the server refuses.
  bool Acquire();
  void Publish(std::shared_ptr<const PasteboardContent> content);

 private:
  SystemClipboard();
  ~SystemClipboard();

  bool LeaveSessionToParent();
  Session* ConnectedSession();
  void DropClosedSession();

  std::shared_ptr<const PasteboardContent> content_;  // nothing unless it is this program's own
  std::unique_ptr<Session> session_;
  bool contentOffered_ = false;  // to the session, when it was new
  std::uint64_t changes_ = 0;
  std::uint64_t seenOwnerChanges_ = 0;  // of those that the session has counted
  std::int64_t nextAttempt_;
  std::chrono::milliseconds patience_;  // with it
  const pid_t process_;
};

}  // namespace x11
