// Another program that owns the clipboard, with one fault of its own.
#pragma once

#include <signal.h>
#include <sys/socket.h>

#include <algorithm>
#include <atomic>
#include <cstddef>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "plugin/clipboard/x11/XClient.h"

/// Sets the clock of the code under test forward, which is else the real one. Any thread.
void AdvanceClock(std::int64_t milliseconds);

enum class Manner {
  kObliging,
  kSilent,    // never answers
  kRefusing,  // refuses every request
  // Those that send their content in pieces:
  kStalls,    // sends the first piece of its content and no other
  kTrickles,  // sends its content byte by byte, one each 100 ms
  kEndless,   // sends pieces of a megabyte, one each 100 ms, forever
};

class FakeOwner {
 public:
  /// Owns the clipboard of `display` when made. Offers `targets`, and `bytes` as each of them.
  FakeOwner(const std::string& display, Manner manner, std::vector<std::string> targets, std::string bytes)
      : manner_(manner), targets_(std::move(targets)), bytes_(std::move(bytes)), client_(display) {
    signal(SIGPIPE, SIG_IGN);  // it may write while it is being ended
    client_.Own("CLIPBOARD");
    thread_ = std::thread([this] { Run(); });
  }
  ~FakeOwner() {
    shutdown(xcb_get_file_descriptor(client_.xcb()), SHUT_RDWR);
    thread_.join();
  }

  /// How many requests have come.
  int Requests() const { return requests_; }

 private:
  using Request = xcb_selection_request_event_t;

  void Run() {
    while (const auto event = client_.NextOfAny(-1)) {
      const int type = event->response_type & ~0x80;
      if (type == XCB_SELECTION_REQUEST) Handle(reinterpret_cast<const Request&>(*event));
      if (type != XCB_PROPERTY_NOTIFY || !isIncremental_) continue;
      if (reinterpret_cast<const xcb_property_notify_event_t&>(*event).state == XCB_PROPERTY_DELETE) SendPiece();
    }
  }

  void Handle(const Request& request) {
    ++requests_;
    last_ = request;
    if (manner_ == Manner::kSilent) return;
    if (manner_ == Manner::kRefusing) return client_.Answer(request, XCB_NONE, 8, "");
    if (manner_ < Manner::kStalls || request.target == client_.Atom("TARGETS")) return Answer(request, bytes_);

    isIncremental_ = true;
    sent_ = 0;
    const std::uint32_t events = XCB_EVENT_MASK_PROPERTY_CHANGE;
    xcb_change_window_attributes(client_.xcb(), request.requestor, XCB_CW_EVENT_MASK, &events);
    client_.Answer(request, client_.Atom("INCR"), 32, Words({1 << 28}));
  }

  void Answer(const Request& request, const std::string& bytes) {
    if (request.target != client_.Atom("TARGETS")) return client_.Answer(request, request.target, 8, bytes);
    std::vector<std::uint32_t> atoms;
    for (const auto& name : targets_) atoms.push_back(client_.Atom(name));
    client_.Answer(request, XCB_ATOM_ATOM, 32, Words(atoms));
  }

  void SendPiece() {
    if (manner_ == Manner::kStalls) isIncremental_ = false;
    if (manner_ > Manner::kStalls) AdvanceClock(100);
    const bool isEndless = manner_ == Manner::kEndless;
    const std::string piece =
        isEndless ? std::string(1 << 20, 'x') : bytes_.substr(std::min(sent_++, bytes_.size()), 1);
    client_.SetProperty(last_.requestor, last_.property, last_.target, 8, piece);
  }

  const Manner manner_;
  const std::vector<std::string> targets_;
  const std::string bytes_;
  XClient client_;
  Request last_{};  // the request in work
  bool isIncremental_ = false;
  std::size_t sent_ = 0;  // bytes of it
  std::atomic<int> requests_ = 0;
  std::thread thread_;
};
