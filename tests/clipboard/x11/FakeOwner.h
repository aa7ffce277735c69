// Another program that owns the clipboard, with one fault of its own.
#pragma once

#include <atomic>
#include <string>
#include <thread>
#include <vector>

#include "tests/clipboard/x11/XClient.h"

/// Sets the clock of the code under test forward, which is else the real one. Any thread.
void AdvanceClock(std::int64_t milliseconds);

enum class Manner {
  kObliging,
  kSilent,       // never answers
  kRefusing,     // refuses every request
  kAnswersLate,  // answers a request, with the bytes "late", only when the next one has come
  // Those that send their content in pieces:
  kStalls,    // sends the first piece of its content and no other
  kTrickles,  // sends pieces of one byte, 400 ms apart, for ever
  kEndless,   // sends pieces of a megabyte, as fast as they are taken, for ever
};

class FakeOwner {
 public:
  /// Owns the clipboard of `display` when made. Offers `targets`, and `bytes` as each of them.
  FakeOwner(const std::string& display, Manner manner, std::vector<std::string> targets, std::string bytes);
  ~FakeOwner();

  /// How many requests have come.
  int Requests() const { return requests_; }

 private:
  using Request = xcb_selection_request_event_t;

  void Run();
  void Handle(const Request& request);
  void Answer(const Request& request, const std::string& bytes);
  void SendPiece();

  const Manner manner_;
  const std::vector<std::string> targets_;
  const std::string bytes_;
  XClient client_;
  Request last_{};  // the request in work
  bool isIncremental_ = false;
  std::atomic<int> requests_ = 0;
  std::thread thread_;
};
