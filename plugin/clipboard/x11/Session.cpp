#include "clipboard/x11/Session.h"

#include <sys/eventfd.h>

#include <new>
#include <system_error>

#include "core/HostProcess_linux.h"
#include "core/KeepLoaded.h"

namespace x11 {

namespace {

using Milliseconds = std::chrono::milliseconds;

constexpr Milliseconds kStopPatience{200};

}  // namespace

Session::Session(const std::string& display, Milliseconds patience) : wake_(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)) {
  StartThread(display);
  std::unique_lock lock(mutex_);
  const auto tried = [this] { return state_ != State::kConnecting; };
  if (!changed_.wait_for(lock, patience, tried)) KeepPluginLoaded();
}

Session::~Session() {
  if (!thread_.joinable()) return;
  std::unique_lock lock(mutex_);
  stopping_ = true;
  Wake();
  const bool mayHandOver = OwnsSelection();
  const Milliseconds patience = kStopPatience + Milliseconds(mayHandOver ? kHandOverLimitMs : 0);
  if (!changed_.wait_for(lock, patience, [this] { return state_ == State::kClosed; })) connection_->Cut();
  lock.unlock();
  thread_.join();
}

void Session::StartThread(const std::string& display) {
  const SignalsBlocked blocked;
  try {
    if (wake_.IsOpen()) thread_ = std::thread([this, display] { Run(display); });
  } catch (const std::system_error&) {  // the process has no thread left
  }
  if (!thread_.joinable()) state_ = State::kClosed;
}

void Session::Run(const std::string& display) {
  connection_ = std::make_unique<Connection>(xcb_connect(display.c_str(), nullptr), wake_.get());
  if (connection_->Prepare()) {
    owner_.emplace(*connection_);
    reader_.emplace(*connection_);
    watch_.emplace(*connection_);
    SetState(State::kConnected);
    Serve();
  }
  SetState(State::kClosed);
}

void Session::Serve() {
  bool handled = false;
  connection_->SetHandler([this, &handled](const xcb_generic_event_t& event) {
    handled = true;
    try {
      owner_->Handle(event);
      reader_->Handle(event);
      watch_->Handle(event);
    } catch (const std::bad_alloc&) {  // too large a value for this machine: its receiver will give up
    }
  });
  while (!connection_->IsLost()) {
    if (owner_->AwaitsContent()) {
      std::unique_lock lock(mutex_);
      changed_.wait(lock, [this] { return HasWork(); });
    } else {
      handled = false;
      connection_->WaitUntil([&] { return handled || HasWork(); }, owner_->Transfers().NextDeadline());
      owner_->Transfers().DropStalled();
    }
    if (stopping_) break;
    if (job_ != nullptr) RunJob();
  }
  if (owner_->Owns()) reader_->HandOver(owner_->TargetsToSave());
}

void Session::RunJob() {
  try {
    (*job_)();
  } catch (const std::bad_alloc&) {  // the answer stays empty
  }
  const std::lock_guard lock(mutex_);
  job_ = nullptr;
  changed_.notify_all();
}

void Session::SetState(State state) {
  const std::lock_guard lock(mutex_);
  state_ = state;
  if (state == State::kClosed) job_ = nullptr;
  changed_.notify_all();
}

// Main thread. A job's own waits are bounded; only a hanging server can make it take longer.
void Session::Call(const Job& job) {
  std::unique_lock lock(mutex_);
  if (state_ != State::kConnected) return;
  job_ = &job;
  Wake();
  const auto done = [this] { return job_ == nullptr; };
  for (unsigned progress = connection_->Progress(); !changed_.wait_for(lock, ServerPatience(), done);) {
    if (connection_->Progress() == progress) connection_->Cut();
    progress = connection_->Progress();
  }
}

// With the mutex held, or the thread could miss it on its way to sleep.
void Session::Wake() {
  eventfd_write(wake_.get(), 1);
  changed_.notify_all();
}

bool Session::Acquire() {
  bool acquired = false;
  Call([&] { acquired = owner_->Acquire(); });
  return acquired;
}

void Session::Publish(const PasteboardContent& content) {
  Call([&] { owner_->Publish(content); });
}

bool Session::AcquireIfFree(const PasteboardContent& content) {
  bool acquired = false;
  Call([&] {
    if (connection_->OwnerOf(connection_->atoms().clipboard) != XCB_NONE) return;
    acquired = owner_->Acquire();
    if (acquired) owner_->Publish(content);
  });
  return acquired;
}

std::optional<std::uint64_t> Session::OwnerChanges() {
  if (state_ != State::kConnected) return std::nullopt;
  if (!connection_->IsAtRest()) Call([&] { connection_->CatchUp(); });
  return watch_->Changes();
}

std::vector<Target> Session::Targets(std::int64_t limit) {
  std::vector<Target> targets;
  Call([&] { targets = reader_->Targets(limit); });
  return targets;
}

std::optional<Property> Session::Read(xcb_atom_t target, std::int64_t limit) {
  std::optional<Property> received;
  Call([&] { received = reader_->Read(target, limit); });
  return received;
}

}  // namespace x11
