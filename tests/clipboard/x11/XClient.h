// Another program on the X server, as a test directs it: what it asks of selections, step by step.
#pragma once

#include <poll.h>
#include <xcb/xcb.h>

#include <cstdint>
#include <cstdlib>
#include <memory>
#include <optional>
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
  /// What a property held.
  struct Content {
    std::string type;  ///< "" when there was no such property
    std::string bytes;
  };

  explicit XClient(const std::string& display) : xcb_(xcb_connect(display.c_str(), nullptr)) {
    if (xcb_connection_has_error(xcb_) != 0) throw std::runtime_error("no X server on display " + display);
    window_ = xcb_generate_id(xcb_);
    const std::uint32_t events = XCB_EVENT_MASK_PROPERTY_CHANGE;
    xcb_create_window(xcb_, 0, window_, xcb_setup_roots_iterator(xcb_get_setup(xcb_)).data->root, 0, 0, 1, 1, 0,
                      XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT, XCB_CW_EVENT_MASK, &events);
  }
  /// Vanishes, whatever it was in the middle of.
  ~XClient() { xcb_disconnect(xcb_); }
  XClient(const XClient&) = delete;

  xcb_connection_t* xcb() const { return xcb_; }
  xcb_window_t window() const { return window_; }

  xcb_atom_t Atom(const std::string& name) {
    const auto cookie = xcb_intern_atom(xcb_, 0, static_cast<std::uint16_t>(name.size()), name.data());
    const Held<xcb_intern_atom_reply_t> reply(xcb_intern_atom_reply(xcb_, cookie, nullptr));
    return reply == nullptr ? xcb_atom_t{XCB_NONE} : reply->atom;
  }
  std::string NameOf(xcb_atom_t atom) {
    const Held<xcb_get_atom_name_reply_t> reply(xcb_get_atom_name_reply(xcb_, xcb_get_atom_name(xcb_, atom), nullptr));
    if (reply == nullptr) return "";
    return {xcb_get_atom_name_name(reply.get()), static_cast<std::size_t>(xcb_get_atom_name_name_length(reply.get()))};
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

  /// Asks for the clipboard as `target`, to be left in `property`. What was sent has reached the server on return.
  void Ask(const std::string& target, const std::string& property = "ANSWER") {
    xcb_convert_selection(xcb_, window_, Atom("CLIPBOARD"), Atom(target), Atom(property), XCB_CURRENT_TIME);
    OwnerOf("CLIPBOARD");
  }
  /// Whether the answer comes, and is no refusal.
  bool IsAnswered() {
    const auto event = Next(XCB_SELECTION_NOTIFY);
    return event != nullptr && reinterpret_cast<const xcb_selection_notify_event_t&>(*event).property != XCB_NONE;
  }
  /// Takes a property of its window away.
  Content Take(const std::string& property = "ANSWER") {
    const auto cookie = xcb_get_property(xcb_, 1, window_, Atom(property), XCB_ATOM_ANY, 0, 0x1FFFFFFF);
    const Held<xcb_get_property_reply_t> reply(xcb_get_property_reply(xcb_, cookie, nullptr));
    if (reply == nullptr || reply->type == XCB_NONE) return {};
    const auto size = static_cast<std::size_t>(xcb_get_property_value_length(reply.get()));
    return {NameOf(reply->type), {static_cast<const char*>(xcb_get_property_value(reply.get())), size}};
  }
  /// Asks and takes the answer, of which a large one is only announced; nothing when it is refused or does not come.
  std::optional<Content> Read(const std::string& target) {
    Ask(target);
    return IsAnswered() ? std::optional(Take()) : std::nullopt;
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

  /// The next event of `type`, dropping others; null when it does not come or the connection ends.
  Event Next(int type) {
    Event event = NextOfAny(kPatienceMs);
    while (event != nullptr && (event->response_type & ~0x80) != type) event = NextOfAny(kPatienceMs);
    return event;
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
  static constexpr int kPatienceMs = 10'000;

  xcb_connection_t* const xcb_;
  xcb_window_t window_;
};
