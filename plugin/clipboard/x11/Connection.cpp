#include "clipboard/x11/Connection.h"

#include <poll.h>
#include <sys/eventfd.h>
#include <sys/socket.h>

#include <algorithm>
#include <climits>
#include <utility>

#include "clipboard/Pasteboard.h"
#include "core/Clock.h"

namespace x11 {

namespace {

constexpr std::pair<xcb_atom_t Atoms::*, const char*> kAtomNames[] = {
    {&Atoms::clipboard, "CLIPBOARD"},
    {&Atoms::clipboardManager, "CLIPBOARD_MANAGER"},
    {&Atoms::targets, "TARGETS"},
    {&Atoms::multiple, "MULTIPLE"},
    {&Atoms::timestamp, "TIMESTAMP"},
    {&Atoms::saveTargets, "SAVE_TARGETS"},
    {&Atoms::utf8String, "UTF8_STRING"},
    {&Atoms::utf8Mime, "text/plain;charset=utf-8"},
    {&Atoms::text, "TEXT"},
    {&Atoms::plainText, kPlainTextType},
    {&Atoms::atomPair, "ATOM_PAIR"},
    {&Atoms::incremental, "INCR"},
    {&Atoms::null, "NULL"},
    {&Atoms::answer, "VARNIX_SELECTION"},
};

constexpr std::size_t kRequestHeaderBytes = 64;  // more than the head of any request
// Measured: larger pieces are slower. Small ones also let several transfers progress at the same time and take
// little of the server's memory.
constexpr std::uint32_t kPieceBytes = 1 << 18;

constexpr std::uint32_t kWatchedEvents = XCB_EVENT_MASK_PROPERTY_CHANGE | XCB_EVENT_MASK_STRUCTURE_NOTIFY;

}  // namespace

Connection::Connection(xcb_connection_t* connection, int wakeFd) : connection_(connection), wakeFd_(wakeFd) {}

Connection::~Connection() { xcb_disconnect(connection_); }

bool Connection::Prepare() {
  xcb_prefetch_maximum_request_length(connection_);
  std::vector<std::string> names;
  for (const auto& [member, name] : kAtomNames) names.push_back(name);
  const auto atoms = Intern(names);
  for (std::size_t i = 0; i < atoms.size(); ++i) atoms_.*kAtomNames[i].first = atoms[i];
  if (IsLost()) return false;
  const std::size_t requestBytes = std::size_t{xcb_get_maximum_request_length(connection_)} * 4;
  maxPropertyBytes_ = std::min<std::size_t>(requestBytes - kRequestHeaderBytes, kPieceBytes);
  return !IsLost();
}

void Connection::Cut() { shutdown(xcb_get_file_descriptor(connection_), SHUT_RDWR); }

bool Connection::WaitUntil(const std::function<bool()>& done, std::int64_t deadline) {
  while (!done()) {
    ++progress_;
    const std::int64_t now = SteadyMilliseconds();
    if (now >= deadline || IsLost()) return false;
    Owned<xcb_generic_event_t> event(xcb_poll_for_event(connection_));
    if (event == nullptr) {
      xcb_flush(connection_);  // which reads what arrives meanwhile
      event.reset(xcb_poll_for_queued_event(connection_));
    }
    if (event != nullptr) {
      handler_(*event);
      continue;
    }
    pollfd descriptors[] = {{xcb_get_file_descriptor(connection_), POLLIN, 0}, {wakeFd_, POLLIN, 0}};
    asleep_ = true;
    poll(descriptors, std::size(descriptors), static_cast<int>(std::min<std::int64_t>(deadline - now, INT_MAX)));
    asleep_ = false;
    eventfd_t count;
    if ((descriptors[1].revents & POLLIN) != 0) eventfd_read(wakeFd_, &count);
  }
  return true;
}

// The order matters: data that is no longer on the socket has woken the thread, which sleeps again only after it has
// handled that data.
bool Connection::IsAtRest() const {
  pollfd socket{xcb_get_file_descriptor(connection_), POLLIN, 0};
  return poll(&socket, 1, 0) == 0 && asleep_;
}

void Connection::CatchUp() {
  OwnerOf(atoms_.clipboard);  // its answer comes after every earlier event
  HandleArrivedEvents();
}

void Connection::HandleArrivedEvents() {
  while (const Owned<xcb_generic_event_t> event{xcb_poll_for_queued_event(connection_)}) {
    ++progress_;
    handler_(*event);
  }
}

std::vector<xcb_atom_t> Connection::Intern(const std::vector<std::string>& names) {
  std::vector<std::pair<const std::string*, xcb_intern_atom_cookie_t>> asked;
  for (const auto& name : names) {
    if (name.empty() || name.size() > UINT16_MAX || atomsByName_.contains(name)) continue;
    asked.emplace_back(&name, xcb_intern_atom(connection_, 0, static_cast<std::uint16_t>(name.size()), name.data()));
  }
  for (const auto& [name, cookie] : asked) {
    const Owned<xcb_intern_atom_reply_t> reply(xcb_intern_atom_reply(connection_, cookie, nullptr));
    if (reply != nullptr) atomsByName_[*name] = reply->atom;
  }
  std::vector<xcb_atom_t> atoms;
  for (const auto& name : names) {
    const auto known = atomsByName_.find(name);
    atoms.push_back(known == atomsByName_.end() ? xcb_atom_t{XCB_NONE} : known->second);
  }
  return atoms;
}

std::vector<std::string> Connection::NamesOf(const std::vector<xcb_atom_t>& atoms) {
  std::vector<std::pair<xcb_atom_t, xcb_get_atom_name_cookie_t>> asked;
  for (const auto atom : atoms) {
    if (!namesByAtom_.contains(atom)) asked.emplace_back(atom, xcb_get_atom_name(connection_, atom));
  }
  for (const auto& [atom, cookie] : asked) {
    const Owned<xcb_get_atom_name_reply_t> reply(xcb_get_atom_name_reply(connection_, cookie, nullptr));
    if (reply == nullptr) continue;
    const auto length = static_cast<std::size_t>(xcb_get_atom_name_name_length(reply.get()));
    namesByAtom_[atom].assign(xcb_get_atom_name_name(reply.get()), length);
  }
  std::vector<std::string> names;
  for (const auto atom : atoms) {
    const auto known = namesByAtom_.find(atom);
    names.push_back(known == namesByAtom_.end() ? "" : known->second);
  }
  return names;
}

xcb_window_t Connection::OwnerOf(xcb_atom_t selection) {
  const Owned<xcb_get_selection_owner_reply_t> reply(
      xcb_get_selection_owner_reply(connection_, xcb_get_selection_owner(connection_, selection), nullptr));
  return reply == nullptr ? xcb_window_t{XCB_NONE} : reply->owner;
}

// In pieces, so that there is progress even over a slow network. The server deletes the property with the last one.
Property Connection::Take(xcb_window_t window, xcb_atom_t property, std::int64_t deadline) {
  Property taken;
  std::size_t total = 0;
  for (std::uint32_t offset = 0;; offset += kPieceBytes / 4) {
    const auto cookie =
        xcb_get_property(connection_, 1, window, property, XCB_GET_PROPERTY_TYPE_ANY, offset, kPieceBytes / 4);
    const Owned<xcb_get_property_reply_t> reply(xcb_get_property_reply(connection_, cookie, nullptr));
    ++progress_;
    if (reply == nullptr) return {};
    const auto size = static_cast<std::size_t>(xcb_get_property_value_length(reply.get()));
    if (offset == 0) total = size + reply->bytes_after;
    if (total > kMaxValueBytes) return {};
    taken.bytes.reserve(total);
    taken.type = reply->type;
    taken.format = reply->format;
    taken.bytes.append(static_cast<const char*>(xcb_get_property_value(reply.get())), size);
    if (reply->bytes_after == 0) return taken;
    if (taken.bytes.size() + reply->bytes_after > total) return {};  // it grows while it is read, perhaps forever
    if (SteadyMilliseconds() >= deadline) return {};
  }
}

void Connection::Watch(xcb_window_t window) {
  ++watched_[window];
  // Even if it is watched already: that may have been another window with the same ID, whose end went unnoticed.
  xcb_change_window_attributes(connection_, window, XCB_CW_EVENT_MASK, &kWatchedEvents);
}

void Connection::Unwatch(xcb_window_t window) {
  const auto watched = watched_.find(window);
  if (watched == watched_.end() || --watched->second > 0) return;
  watched_.erase(watched);
  constexpr std::uint32_t kNone = XCB_EVENT_MASK_NO_EVENT;
  xcb_change_window_attributes(connection_, window, XCB_CW_EVENT_MASK, &kNone);
}

Window::Window(Connection& connection) : connection_(connection), id_(xcb_generate_id(connection.get())) {
  const xcb_window_t root = xcb_setup_roots_iterator(xcb_get_setup(connection.get())).data->root;
  constexpr std::uint32_t kEvents = XCB_EVENT_MASK_PROPERTY_CHANGE;
  xcb_create_window(connection.get(), 0, id_, root, 0, 0, 1, 1, 0, XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT,
                    XCB_CW_EVENT_MASK, &kEvents);
}

Window::~Window() { xcb_destroy_window(connection_.get(), id_); }

}  // namespace x11
