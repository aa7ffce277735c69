#include "clipboard/x11/SystemClipboard.h"

#include <unistd.h>

#include <cstdlib>
#include <utility>

#include "clipboard/ReadingLimit.h"
#include "core/Clock.h"

namespace x11 {

SystemClipboard& SystemClipboard::Shared() {
  static SystemClipboard clipboard;
  return clipboard;
}

SystemClipboard::SystemClipboard()
    : content_(std::make_shared<PasteboardContent>()),
      nextAttempt_(SteadyMilliseconds()),
      patience_(ServerPatience()),
      process_(getpid()) {}

SystemClipboard::~SystemClipboard() {
  LeaveSessionToParent();
  // A thread that waits for a silent server cannot be ended. It owns everything that it uses.
  if (session_ != nullptr && session_->state() == Session::State::kConnecting) static_cast<void>(session_.release());
}

// A process forked from the host lacks the session's thread, and the connection belongs to the host.
bool SystemClipboard::LeaveSessionToParent() {
  const bool isForked = getpid() != process_;
  if (isForked) static_cast<void>(session_.release());
  return isForked;
}

std::optional<std::uint64_t> SystemClipboard::ChangeCount() {
  Session* const session = ConnectedSession();
  if (session == nullptr) return changes_;
  const auto ownerChanges = session->OwnerChanges();
  if (!ownerChanges) return std::nullopt;
  if (*ownerChanges != seenOwnerChanges_) ++changes_;
  seenOwnerChanges_ = *ownerChanges;
  return changes_;
}

const PasteboardContent* SystemClipboard::OwnContent() {
  if (ConnectedSession() == nullptr || session_->OwnsSelection()) return content_.get();
  if (!content_->Types().empty()) content_ = std::make_shared<PasteboardContent>();
  return nullptr;
}

std::vector<Target> SystemClipboard::Targets() {
  Session* const session = ConnectedSession();
  return session == nullptr ? std::vector<Target>() : session->Targets(ReadingLimit::Deadline());
}

std::optional<Property> SystemClipboard::Read(xcb_atom_t target) {
  Session* const session = ConnectedSession();
  return session == nullptr ? std::nullopt : session->Read(target, ReadingLimit::Deadline());
}

bool SystemClipboard::Acquire() {
  Session* const session = ConnectedSession();
  return session == nullptr || session->Acquire() || ConnectedSession() == nullptr;
}

void SystemClipboard::Publish(std::shared_ptr<const PasteboardContent> content) {
  content_ = std::move(content);
  ++changes_;
  if (session_ != nullptr && session_->OwnsSelection()) session_->Publish(*content_);
}

/// Null when there is no server, or none that has answered yet.
Session* SystemClipboard::ConnectedSession() {
  if (LeaveSessionToParent()) return nullptr;
  DropClosedSession();
  if (session_ == nullptr) {
    const char* const display = std::getenv("DISPLAY");
    if (display == nullptr || *display == '\0' || SteadyMilliseconds() < nextAttempt_) return nullptr;
    session_ = std::make_unique<Session>(display, patience_);
  }
  const Session::State state = session_->state();
  // A server that did not answer in time is not waited for again until it has answered.
  if (state == Session::State::kConnecting) patience_ = {};
  if (state != Session::State::kConnected) return nullptr;
  patience_ = ServerPatience();
  if (!contentOffered_) {
    // What was written without a server goes to this one, unless another program has its clipboard already.
    if (!content_->Types().empty()) session_->AcquireIfFree(*content_);
    contentOffered_ = session_->state() == Session::State::kConnected;
    seenOwnerChanges_ = 0;
    ++changes_;
  }
  return session_.get();
}

void SystemClipboard::DropClosedSession() {
  if (session_ == nullptr || session_->state() != Session::State::kClosed) return;
  if (contentOffered_ && !session_->OwnsSelection()) content_ = std::make_shared<PasteboardContent>();
  session_.reset();
  contentOffered_ = false;
  nextAttempt_ = SteadyMilliseconds() + kReconnectPauseMs;
}

}  // namespace x11
