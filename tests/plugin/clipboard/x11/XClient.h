// Another program on an X server, controlled by a test.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "clipboard/x11/Connection.h"

class XClient {
 public:
  explicit XClient(const std::string& display) : xcb_(xcb_connect(display.c_str(), nullptr)) {
    xcb_create_window(xcb_, 0, window_, xcb_setup_roots_iterator(xcb_get_setup(xcb_)).data->root, 0, 0, 1, 1, 0,
                      XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT, 0, nullptr);
  }
  /// Vanishes, whatever it was doing.
  ~XClient() { xcb_disconnect(xcb_); }
  XClient(const XClient&) = delete;

  xcb_connection_t* xcb() const { return xcb_; }

  xcb_atom_t Atom(const std::string& name) {
    const auto cookie = xcb_intern_atom(xcb_, 0, static_cast<std::uint16_t>(name.size()), name.data());
    return x11::Owned<xcb_intern_atom_reply_t>(xcb_intern_atom_reply(xcb_, cookie, nullptr))->atom;
  }
  /// The bytes of a list of atoms; "" stands for none.
  std::string Atoms(const std::vector<std::string>& names) {
    std::vector<xcb_atom_t> atoms;
    for (const auto& name : names) atoms.push_back(name.empty() ? xcb_atom_t{XCB_NONE} : Atom(name));
    return {reinterpret_cast<const char*>(atoms.data()), atoms.size() * sizeof(xcb_atom_t)};
  }
  /// The server has acted when this returns.
  void Own(const std::string& selection) {
    xcb_set_selection_owner(xcb_, window_, Atom(selection), XCB_CURRENT_TIME);
    Atom(selection);
  }
  void Put(xcb_window_t window, xcb_atom_t property, xcb_atom_t type, int format, const std::string& bytes) {
    xcb_change_property(xcb_, XCB_PROP_MODE_REPLACE, window, property, type, static_cast<std::uint8_t>(format),
                        static_cast<std::uint32_t>(bytes.size() * 8 / format), bytes.data());
  }
  /// Reads and deletes a property of its window.
  std::string Take(const std::string& property) {
    const auto cookie = xcb_get_property(xcb_, 1, window_, Atom(property), XCB_GET_PROPERTY_TYPE_ANY, 0, 1 << 24);
    const x11::Owned<xcb_get_property_reply_t> reply(xcb_get_property_reply(xcb_, cookie, nullptr));
    const auto* const bytes = static_cast<const char*>(xcb_get_property_value(reply.get()));
    return {bytes, static_cast<std::size_t>(xcb_get_property_value_length(reply.get()))};
  }
  /// Asks for the clipboard as `target`, in the property "ANSWER" that holds `argument`, and waits for the answer.
  void Ask(const std::string& target, const std::string& argument = "") {
    Put(window_, Atom("ANSWER"), Atom("ATOM_PAIR"), 32, argument);
    xcb_convert_selection(xcb_, window_, Atom("CLIPBOARD"), Atom(target), Atom("ANSWER"), XCB_CURRENT_TIME);
    NextEvent();
  }
  /// Null when the connection ends.
  x11::Owned<xcb_generic_event_t> NextEvent() {
    xcb_flush(xcb_);
    return x11::Owned<xcb_generic_event_t>(xcb_wait_for_event(xcb_));
  }

 private:
  xcb_connection_t* const xcb_;
  const xcb_window_t window_ = xcb_generate_id(xcb_);
};
