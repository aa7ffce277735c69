#include "tests/clipboard/x11/FakeOwner.h"

#include <pthread.h>
#include <signal.h>
#include <sys/socket.h>

#include "tests/clipboard/x11/TestClock.h"

FakeOwner::FakeOwner(const std::string& display, Manner manner, std::vector<std::string> targets, std::string bytes)
    : manner_(manner), targets_(std::move(targets)), bytes_(std::move(bytes)), client_(display) {
  client_.Own("CLIPBOARD");
  thread_ = std::thread([this] { Run(); });
}

FakeOwner::~FakeOwner() {
  shutdown(xcb_get_file_descriptor(client_.xcb()), SHUT_RDWR);
  thread_.join();
}

void FakeOwner::Run() {
  sigset_t pipe;  // what this program writes when it is being ended is none of the test's business
  sigemptyset(&pipe);
  sigaddset(&pipe, SIGPIPE);
  pthread_sigmask(SIG_BLOCK, &pipe, nullptr);
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
  if (manner_ < Manner::kStallsBetweenPieces || AsksForTargets(request)) return Answer(request, bytes_);

  isIncremental_ = true;
  const std::uint32_t events = XCB_EVENT_MASK_PROPERTY_CHANGE;
  xcb_change_window_attributes(client_.xcb(), request.requestor, XCB_CW_EVENT_MASK, &events);
  client_.Answer(request, client_.Atom("INCR"), 32, Words({1 << 28}));
}

bool FakeOwner::AsksForTargets(const Request& request) { return client_.NameOf(request.target) == "TARGETS"; }

void FakeOwner::Answer(const Request& request, const std::string& bytes) {
  std::vector<std::uint32_t> atoms;
  for (const auto& name : targets_) atoms.push_back(client_.Atom(name));
  for (int times = manner_ == Manner::kAnswersTwice ? 2 : 1; times > 0; --times) {
    if (AsksForTargets(request)) {
      client_.Answer(request, XCB_ATOM_ATOM, 32, Words(atoms));
    } else {
      client_.Answer(request, request.target, 8, bytes);
    }
  }
}

void FakeOwner::SendPiece() {
  if (++pieces_ > 1 && manner_ == Manner::kStallsBetweenPieces) return;
  if (pieces_ > 1 && manner_ == Manner::kDiesBetweenPieces) {
    shutdown(xcb_get_file_descriptor(client_.xcb()), SHUT_RDWR);
    return;
  }
  if (manner_ == Manner::kTrickles) AdvanceClock(400);
  const std::string piece(manner_ == Manner::kEndless ? 1 << 20 : 1, 'x');
  client_.SetProperty(last_.requestor, last_.property, last_.target, 8, piece);
}
