#include "tests/clipboard/x11/XClient.h"

#include <poll.h>

#include <stdexcept>

namespace {

template <typename Reply>
std::unique_ptr<Reply, FreeEvent> Hold(Reply* reply) {
  return std::unique_ptr<Reply, FreeEvent>(reply);
}

}  // namespace

XClient::XClient(const std::string& display) : xcb_(xcb_connect(display.c_str(), nullptr)) {
  if (xcb_connection_has_error(xcb_) != 0) throw std::runtime_error("no X server on display " + display);
  window_ = xcb_generate_id(xcb_);
  const std::uint32_t events = XCB_EVENT_MASK_PROPERTY_CHANGE;
  xcb_create_window(xcb_, 0, window_, xcb_setup_roots_iterator(xcb_get_setup(xcb_)).data->root, 0, 0, 1, 1, 0,
                    XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT, XCB_CW_EVENT_MASK, &events);
}

XClient::~XClient() { xcb_disconnect(xcb_); }

xcb_atom_t XClient::Atom(const std::string& name) {
  const auto cookie = xcb_intern_atom(xcb_, 0, static_cast<std::uint16_t>(name.size()), name.data());
  const auto reply = Hold(xcb_intern_atom_reply(xcb_, cookie, nullptr));
  return reply == nullptr ? xcb_atom_t{XCB_NONE} : reply->atom;
}

std::string XClient::NameOf(xcb_atom_t atom) {
  const auto reply = Hold(xcb_get_atom_name_reply(xcb_, xcb_get_atom_name(xcb_, atom), nullptr));
  if (reply == nullptr) return "";
  return {xcb_get_atom_name_name(reply.get()), static_cast<std::size_t>(xcb_get_atom_name_name_length(reply.get()))};
}

xcb_window_t XClient::OwnerOf(const std::string& selection) {
  const auto cookie = xcb_get_selection_owner(xcb_, Atom(selection));
  const auto reply = Hold(xcb_get_selection_owner_reply(xcb_, cookie, nullptr));
  return reply == nullptr ? xcb_window_t{XCB_NONE} : reply->owner;
}

void XClient::Own(const std::string& selection) {
  xcb_set_selection_owner(xcb_, window_, Atom(selection), XCB_CURRENT_TIME);
  OwnerOf(selection);
}

void XClient::SetProperty(xcb_window_t window, xcb_atom_t property, xcb_atom_t type, int format,
                          const std::string& bytes) {
  xcb_change_property(xcb_, XCB_PROP_MODE_REPLACE, window, property, type, static_cast<std::uint8_t>(format),
                      static_cast<std::uint32_t>(bytes.size() * 8 / format), bytes.data());
}

void XClient::Ask(const std::string& target, const std::string& property) {
  xcb_convert_selection(xcb_, window_, Atom("CLIPBOARD"), Atom(target), Atom(property), XCB_CURRENT_TIME);
  OwnerOf("CLIPBOARD");
}

XClient::Content XClient::Take(const std::string& property) {
  const auto cookie = xcb_get_property(xcb_, 1, window_, Atom(property), XCB_ATOM_ANY, 0, 0x1FFFFFFF);
  const auto reply = Hold(xcb_get_property_reply(xcb_, cookie, nullptr));
  if (reply == nullptr || reply->type == XCB_NONE) return {};
  const auto size = static_cast<std::size_t>(xcb_get_property_value_length(reply.get()));
  return {NameOf(reply->type), {static_cast<const char*>(xcb_get_property_value(reply.get())), size}};
}

std::optional<XClient::Content> XClient::Read(const std::string& target) {
  Ask(target);
  if (!IsAnswered()) return std::nullopt;
  return Take();
}

bool XClient::IsAnswered() {
  const auto event = Next(XCB_SELECTION_NOTIFY);
  return event != nullptr && reinterpret_cast<const xcb_selection_notify_event_t&>(*event).property != XCB_NONE;
}

void XClient::Answer(const xcb_selection_request_event_t& request, xcb_atom_t type, int format,
                     const std::string& bytes) {
  SetProperty(request.requestor, request.property, type, format, bytes);
  Notify(request, request.property);
}

void XClient::Notify(const xcb_selection_request_event_t& request, xcb_atom_t property) {
  xcb_selection_notify_event_t notify[2] = {};  // an event is 32 bytes on the wire
  notify[0].response_type = XCB_SELECTION_NOTIFY;
  notify[0].requestor = request.requestor;
  notify[0].selection = request.selection;
  notify[0].target = request.target;
  notify[0].property = property;
  xcb_send_event(xcb_, 0, request.requestor, 0, reinterpret_cast<const char*>(notify));
  xcb_flush(xcb_);
}

Event XClient::Next(int type, int patienceMs) {
  Event event = NextOfAny(patienceMs);
  while (event != nullptr && (event->response_type & ~0x80) != type) event = NextOfAny(patienceMs);
  return event;
}

Event XClient::NextOfAny(int patienceMs) {
  for (;;) {
    xcb_flush(xcb_);
    Event event(xcb_poll_for_event(xcb_));
    if (event != nullptr || xcb_connection_has_error(xcb_)) return event;
    pollfd descriptor{xcb_get_file_descriptor(xcb_), POLLIN, 0};
    if (poll(&descriptor, 1, patienceMs) == 0) return nullptr;
  }
}

std::string Words(const std::vector<std::uint32_t>& words) {
  return {reinterpret_cast<const char*>(words.data()), words.size() * sizeof(std::uint32_t)};
}
