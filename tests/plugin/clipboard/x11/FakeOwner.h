// Another program that owns the clipboard, with one fault.
#pragma once

#include <signal.h>
#include <sys/socket.h>

#include <algorithm>
#include <atomic>
#include <thread>

#include "clipboard/x11/Conversion.h"
#include "plugin/clipboard/x11/XClient.h"

/// Moves the clock of the code under test, which does not run by itself. Any thread.
void AdvanceClock(std::int64_t milliseconds);

enum class Manner {
  kObliging,
  kSilent,    // never answers
  kRefusing,  // refuses every request
  kTrickles,  // sends its content byte by byte, one every 100 ms
  kEndless,   // sends a megabyte every 100 ms, forever
};

class FakeOwner {
 public:
  /// Takes ownership of the clipboard of `display`. Offers `targets`, with `bytes` as the content of each.
  FakeOwner(const std::string& display, Manner manner, std::vector<std::string> targets, std::string bytes)
      : manner_(manner), targets_(std::move(targets)), bytes_(std::move(bytes)), client_(display) {
    signal(SIGPIPE, SIG_IGN);  // it may be writing when the connection is cut
    client_.Own("CLIPBOARD");
    thread_ = std::thread([this] { Run(); });
  }
  ~FakeOwner() {
    shutdown(xcb_get_file_descriptor(client_.xcb()), SHUT_RDWR);
    thread_.join();
  }

  /// The number of requests so far.
  int Requests() const { return requests_; }

 private:
  void Run() {
    while (const auto event = client_.NextEvent()) {
      const int type = event->response_type & ~0x80;
      if (type == XCB_SELECTION_REQUEST) {
        ++requests_;
        request_ = reinterpret_cast<const xcb_selection_request_event_t&>(*event);
        Answer();
      } else if (type == XCB_PROPERTY_NOTIFY) {
        const auto& change = reinterpret_cast<const xcb_property_notify_event_t&>(*event);
        if (change.state == XCB_PROPERTY_DELETE) SendPiece();
      }
    }
  }

  void Answer() {
    if (manner_ == Manner::kSilent) return AdvanceClock(x11::kOwnerPatienceMs);
    if (manner_ == Manner::kRefusing) {
      request_.property = XCB_NONE;
    } else if (request_.target == client_.Atom("TARGETS")) {
      client_.Put(request_.requestor, request_.property, XCB_ATOM_ATOM, 32, client_.Atoms(targets_));
    } else if (manner_ == Manner::kObliging) {
      client_.Put(request_.requestor, request_.property, request_.target, 8, bytes_);
    } else {
      sent_ = 0;
      client_.Put(request_.requestor, request_.property, client_.Atom("INCR"), 32, "size");
      const std::uint32_t events = XCB_EVENT_MASK_PROPERTY_CHANGE;
      xcb_change_window_attributes(client_.xcb(), request_.requestor, XCB_CW_EVENT_MASK, &events);
    }
    xcb_selection_notify_event_t notify[2] = {};  // an event is 32 bytes on the wire
    notify[0] = {XCB_SELECTION_NOTIFY, 0, 0, 0, request_.requestor, request_.selection, request_.target,
                 request_.property};
    xcb_send_event(client_.xcb(), 0, request_.requestor, 0, reinterpret_cast<const char*>(notify));
  }

  void SendPiece() {
    AdvanceClock(100);
    const auto piece = manner_ == Manner::kEndless ? std::string(1 << 20, 'x') : bytes_.substr(sent_, 1);
    sent_ = std::min(sent_ + 1, bytes_.size());
    client_.Put(request_.requestor, request_.property, request_.target, 8, piece);
  }

  const Manner manner_;
  const std::vector<std::string> targets_;
  const std::string bytes_;
  XClient client_;
  xcb_selection_request_event_t request_{};  // being answered
  std::size_t sent_ = 0;                     // bytes of the content, in pieces
  std::atomic<int> requests_ = 0;
  std::thread thread_;
};
