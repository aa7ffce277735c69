// The thread that serves and reads the CLIPBOARD selection over one connection to an X server, for as long as that
// lasts.
#pragma once

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include "clipboard/PasteboardContent.h"
#include "clipboard/x11/Connection.h"
#include "clipboard/x11/OwnerWatch.h"
#include "clipboard/x11/SelectionOwner.h"
#include "clipboard/x11/SelectionReader.h"
#include "core/FileDescriptor.h"

namespace x11 {

/// FileMaker's main thread makes, calls and destroys it. That thread itself never talks to the server, so that neither
/// a server that hangs nor the SIGPIPE of one that died can reach it.
class Session {
 public:
  enum class State { kConnecting, kConnected, kClosed };

  /// Connects to `display`, waiting at most `patience`. A server that accepts and then says nothing holds the thread
  /// where nothing can reach it: the state stays kConnecting, and the plug-in stays in memory from then on.
  Session(const std::string& display, std::chrono::milliseconds patience);
  /// Has a clipboard manager save what this program owns, and ends the thread; both in bounded time. Not in the state
  /// kConnecting.
  ~Session();

  State state() const { return state_; }
  /// Whether the content is this program's own. Stays true when the connection is lost.
  bool OwnsSelection() const { return state_ != State::kConnecting && owner_ && owner_->Owns(); }

  // The rest fails in any state but kConnected.

  /// Takes the selection. Requests are not answered until Publish, which has to follow.
  bool Acquire();
  void Publish(const PasteboardContent& content);
  /// Takes the selection for `content` unless another program owns it.
  bool AcquireIfFree(const PasteboardContent& content);
  /// How often the selection has changed hands, up to this call; nothing when the server does not report it. Waits for
  /// the server only when something has just come from it.
  std::optional<std::uint64_t> OwnerChanges();
  /// See SelectionReader.
  std::vector<Target> Targets(std::int64_t limit);
  std::optional<Property> Read(xcb_atom_t target, std::int64_t limit);

 private:
  using Job = std::function<void()>;

  void StartThread(const std::string& display);
  void Run(const std::string& display);
  void Serve();
  bool HasWork() const { return job_ != nullptr || stopping_; }
  void RunJob();
  void SetState(State state);
  void Call(const Job& job);
  void Wake();

  const FileDescriptor wake_;
  std::mutex mutex_;
  std::condition_variable changed_;
  std::atomic<State> state_ = State::kConnecting;
  std::atomic<const Job*> job_ = nullptr;
  std::atomic<bool> stopping_ = false;
  std::unique_ptr<Connection> connection_;
  std::optional<SelectionOwner> owner_;
  std::optional<SelectionReader> reader_;
  std::optional<OwnerWatch> watch_;
  std::thread thread_;
};

}  // namespace x11
