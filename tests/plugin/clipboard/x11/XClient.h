// Another program on the X server, as a test directs it: what it asks of selections, step by step.
#pragma once

#include <poll.h>
#include <xcb/xcb.h>

#include <cstdint>
#include <cstdlib>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

struct FreeMemory {
  void operator()(void* memory) const { std::free(memory); }
};
template <typename Reply>
using Held = std::unique_ptr<Reply, FreeMemory>;
using Event = Held<xcb_generic_event_t>;

/// The bytes of an ATOM or INTEGER value.
inline std::string Words(const std::vector<std::uint32_t>& words) {
  return {reinterpret_cast<const char*>(words.data()), words.size() * sizeof(std::uint32_t)};
}

class XClient {
 public:
  explicit XClient(const std::string& display) : xcb_(xcb_connect(display.c_str(), nullptr)) {
    if (xcb_connection_has_error(xcb_) != 0) throw std::runtime_error("no X server on display " + display);
    window_ = xcb_generate_id(xcb_);
    xcb_create_window(xcb_, 0, window_, xcb_setup_roots_iterator(xcb_get_setup(xcb_)).data->root, 0, 0, 1, 1, 0,
                      XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT, 0, nullptr);
  }
  /// Vanishes, whatever it was in the middle of.
  ~XClient() { xcb_disconnect(xcb_); }
  XClient(const XClient&) = delete;

  xcb_connection_t* xcb() const { return xcb_; }

  xcb_atom_t Atom(const std::string& name) {
    const auto cookie = xcb_intern_atom(xcb_, 0, static_cast<std::uint16_t>(name.size()), name.data());
    const Held<xcb_intern_atom_reply_t> reply(xcb_intern_atom_reply(xcb_, cookie, nullptr));
    return reply == nullptr ? xcb_atom_t{XCB_NONE} : reply->atom;
  }
  xcb_window_t OwnerOf(const std::string& selection) {
    const auto cookie = xcb_get_selection_owner(xcb_, Atom(selection));
    const Held<xcb_get_selection_owner_reply_t> reply(xcb_get_selection_owner_reply(xcb_, cookie, nullptr));
    return reply == nullptr ? xcb_window_t{XCB_NONE} : reply->owner;
  }
  void Own(const std::string& selection) {
    xcb_set_selection_owner(xcb_, window_, Atom(selection), XCB_CURRENT_TIME);
    OwnerOf(selection);
  }
  void SetProperty(xcb_window_t window, xcb_atom_t property, xcb_atom_t type, int format, const std::string& bytes) {
    xcb_change_property(xcb_, XCB_PROP_MODE_REPLACE, window, property, type, static_cast<std::uint8_t>(format),
                        static_cast<std::uint32_t>(bytes.size() * 8 / format), bytes.data());
  }

  /// Asks for the clipboard as `target`. What was sent has reached the server on return.
  void Ask(const std::string& target) {
    xcb_convert_selection(xcb_, window_, Atom("CLIPBOARD"), Atom(target), Atom("ANSWER"), XCB_CURRENT_TIME);
    OwnerOf("CLIPBOARD");
  }
  /// Answers another program's request, with this value or, of the type XCB_NONE, a refusal.
  void Answer(const xcb_selection_request_event_t& request, xcb_atom_t type, int format, const std::string& bytes) {
    if (type != XCB_NONE) SetProperty(request.requestor, request.property, type, format, bytes);
    xcb_selection_notify_event_t notify[2] = {};  // an event is 32 bytes on the wire
    notify[0].response_type = XCB_SELECTION_NOTIFY;
    notify[0].requestor = request.requestor;
    notify[0].selection = request.selection;
    notify[0].target = request.target;
    notify[0].property = type == XCB_NONE ? type : request.property;
    xcb_send_event(xcb_, 0, request.requestor, 0, reinterpret_cast<const char*>(notify));
    xcb_flush(xcb_);
  }

  /// The next event of any type; null when it does not come in `patienceMs` (-1: ever) or the connection ends.
  Event NextOfAny(int patienceMs) {
    for (;;) {
      xcb_flush(xcb_);
      Event event(xcb_poll_for_event(xcb_));
      if (event != nullptr || xcb_connection_has_error(xcb_)) return event;
      pollfd descriptor{xcb_get_file_descriptor(xcb_), POLLIN, 0};
      if (poll(&descriptor, 1, patienceMs) == 0) return nullptr;
    }
  }

 private:
  xcb_connection_t* const xcb_;
  xcb_window_t window_;
};
