// Another program on the X server, as a test directs it: what it asks of selections, step by step.
#pragma once

#include <xcb/xcb.h>

#include <cstdint>
#include <cstdlib>
#include <memory>
#include <optional>
#include <string>
#include <vector>

struct FreeEvent {
  void operator()(void* memory) const { std::free(memory); }
};
using Event = std::unique_ptr<xcb_generic_event_t, FreeEvent>;

class XClient {
 public:
  /// What a property held.
  struct Content {
    std::string type;  ///< "" when there was no such property
    std::string bytes;
  };

  explicit XClient(const std::string& display);
  /// Vanishes, whatever it was in the middle of.
  ~XClient();
  XClient(const XClient&) = delete;
  XClient& operator=(const XClient&) = delete;

  xcb_connection_t* xcb() const { return xcb_; }
  xcb_window_t window() const { return window_; }

  xcb_atom_t Atom(const std::string& name);
  std::string NameOf(xcb_atom_t atom);
  xcb_window_t OwnerOf(const std::string& selection);
  void Own(const std::string& selection);
  void SetProperty(xcb_window_t window, xcb_atom_t property, xcb_atom_t type, int format, const std::string& bytes);

  /// Asks for the clipboard as `target`, to be left in `property`. What was sent has reached the server on return.
  void Ask(const std::string& target, const std::string& property = "ANSWER");
  /// Takes a property of its window away.
  Content Take(const std::string& property = "ANSWER");
  /// Asks and takes the answer, of which a large one is only announced; nothing when it is refused or does not come.
  std::optional<Content> Read(const std::string& target);

  /// Answers another program's request, with this value or a refusal.
  void Answer(const xcb_selection_request_event_t& request, xcb_atom_t type, int format, const std::string& bytes);
  void Refuse(const xcb_selection_request_event_t& request) { Notify(request, XCB_NONE); }

  /// The next event of `type`, dropping others; null when it does not come in `patienceMs` (-1: ever) or the connection
  /// ends.
  Event Next(int type, int patienceMs = kPatienceMs);
  /// The next event of any type.
  Event NextOfAny(int patienceMs = kPatienceMs);
  /// Whether the answer to a request comes, and is no refusal.
  bool IsAnswered();

 private:
  void Notify(const xcb_selection_request_event_t& request, xcb_atom_t property);

  static constexpr int kPatienceMs = 10'000;

  xcb_connection_t* const xcb_;
  xcb_window_t window_;
};

/// The bytes of an ATOM or INTEGER value.
std::string Words(const std::vector<std::uint32_t>& words);
