// The thread that serves and reads the CLIPBOARD selection over one connection to an X server, as long as it lasts.
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

/// FileMaker's main thread creates, calls and destroys it, but never talks to the server itself. So neither a hanging
/// server nor the SIGPIPE of a dead one can affect the main thread.
class Session {
 public:
  enum class State { kConnecting, kConnected, kClosed };

  /// Connects to `display`, waiting at most `patience`. A server that accepts and then stays silent blocks the thread
  /// where nothing can end it: the state stays kConnecting, and the plug-in stays in memory from then on.
  Session(const std::string& display, std::chrono::milliseconds patience);
  /// Asks a clipboard manager to save what this program owns, and ends the thread; both in bounded time. Not allowed in
  /// the state kConnecting.
  ~Session();

  State state() const { return state_; }
  /// Whether the content is this program's own. Stays true when the connection is lost.
  bool OwnsSelection() const { return state_ != State::kConnecting && owner_ && owner_->Owns(); }

  // The rest fails in any state other than kConnected.

  /// Takes the selection. Publish must follow; requests are not answered before it.
  bool Acquire();
  void Publish(const PasteboardContent& content);
  /// Takes the selection for `content` unless another program owns it.
  bool AcquireIfFree(const PasteboardContent& content);
  /// How often the selection has changed hands, up to this call; nothing when the server does not report it. Waits for
  /// the server only if it has just sent something.
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
