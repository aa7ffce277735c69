#include "tests/clipboard/x11/FakeOwner.h"

#include <signal.h>
#include <sys/socket.h>

#include <chrono>
#include <utility>

#include "core/Clock.h"

namespace {

std::atomic<std::int64_t> g_clockOffset = 0;

}  // namespace

void AdvanceClock(std::int64_t milliseconds) { g_clockOffset += milliseconds; }

std::int64_t SteadyMilliseconds() {
  const auto now = std::chrono::steady_clock::now().time_since_epoch();
  return std::chrono::duration_cast<std::chrono::milliseconds>(now).count() + g_clockOffset;
}

FakeOwner::FakeOwner(const std::string& display, Manner manner, std::vector<std::string> targets, std::string bytes)
    : manner_(manner), targets_(std::move(targets)), bytes_(std::move(bytes)), client_(display) {
  signal(SIGPIPE, SIG_IGN);  // it may write while it is being ended
  client_.Own("CLIPBOARD");
  thread_ = std::thread([this] { Run(); });
}

FakeOwner::~FakeOwner() {
  shutdown(xcb_get_file_descriptor(client_.xcb()), SHUT_RDWR);
  thread_.join();
}

void FakeOwner::Run() {
  while (const auto event = client_.NextOfAny(-1)) {
    const int type = event->response_type & ~0x80;
    if (type == XCB_SELECTION_REQUEST) Handle(reinterpret_cast<const Request&>(*event));
    if (type != XCB_PROPERTY_NOTIFY || !isIncremental_) continue;
    if (reinterpret_cast<const xcb_property_notify_event_t&>(*event).state == XCB_PROPERTY_DELETE) SendPiece();
  }
}

void FakeOwner::Handle(const Request& request) {
  ++requests_;
  const Request previous = std::exchange(last_, request);
  if (manner_ == Manner::kSilent) return;
  if (manner_ == Manner::kRefusing) return client_.Refuse(request);
  if (manner_ == Manner::kAnswersLate && previous.requestor == XCB_NONE) return;
  if (manner_ == Manner::kAnswersLate) Answer(previous, "late");
  if (manner_ < Manner::kStalls || request.target == client_.Atom("TARGETS")) return Answer(request, bytes_);

  isIncremental_ = true;
  const std::uint32_t events = XCB_EVENT_MASK_PROPERTY_CHANGE;
  xcb_change_window_attributes(client_.xcb(), request.requestor, XCB_CW_EVENT_MASK, &events);
  client_.Answer(request, client_.Atom("INCR"), 32, Words({1 << 28}));
}

void FakeOwner::Answer(const Request& request, const std::string& bytes) {
  if (request.target != client_.Atom("TARGETS")) return client_.Answer(request, request.target, 8, bytes);
  std::vector<std::uint32_t> atoms;
  for (const auto& name : targets_) atoms.push_back(client_.Atom(name));
  client_.Answer(request, XCB_ATOM_ATOM, 32, Words(atoms));
}

void FakeOwner::SendPiece() {
  if (manner_ == Manner::kStalls) isIncremental_ = false;
  if (manner_ == Manner::kTrickles) AdvanceClock(400);
  const std::string piece(manner_ == Manner::kEndless ? 1 << 20 : 1, 'x');
  client_.SetProperty(last_.requestor, last_.property, last_.target, 8, piece);
}
