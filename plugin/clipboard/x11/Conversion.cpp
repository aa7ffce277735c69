#include "clipboard/x11/Conversion.h"

#include <algorithm>
#include <cstddef>
#include <cstring>

#include "core/Clock.h"

namespace x11 {

namespace {

// The owner announces at least so many bytes. It may be wrong.
std::size_t AnnouncedBytes(const Property& announcement) {
  std::uint32_t count = 0;
  if (announcement.bytes.size() >= sizeof count) std::memcpy(&count, announcement.bytes.data(), sizeof count);
  return std::min<std::size_t>(count, kMaxValueBytes);
}

}  // namespace

Conversion::Conversion(Connection& connection, xcb_window_t owner, xcb_atom_t selection, std::int64_t limit)
    : connection_(connection), owner_(owner), selection_(selection), limit_(limit), window_(connection) {
  connection_.Watch(owner_);
}

Conversion::~Conversion() { connection_.Unwatch(owner_); }

void Conversion::Ask(xcb_atom_t target, const std::vector<xcb_atom_t>& argument) {
  target_ = target;
  const xcb_atom_t property = connection_.atoms().answer;
  if (!argument.empty()) {
    xcb_change_property(connection_.get(), XCB_PROP_MODE_REPLACE, window_.id(), property, XCB_ATOM_ATOM, 32,
                        static_cast<std::uint32_t>(argument.size()), argument.data());
  }
  xcb_convert_selection(connection_.get(), window_.id(), selection_, target, property, XCB_CURRENT_TIME);
}

bool Conversion::AwaitAnswer(std::int64_t deadline) { return WaitFor(answered_, deadline); }

std::optional<Property> Conversion::Receive() {
  const std::int64_t start = SteadyMilliseconds();
  if (!AwaitAnswer(start + kOwnerPatienceMs) || !accepted_) return std::nullopt;
  Property received = TakeProperty();
  if (received.type == connection_.atoms().incremental) return ReceivePieces(AnnouncedBytes(received), start);
  if (received.type == XCB_NONE) return std::nullopt;
  return received;
}

// Deleting a piece asks the owner for the next one. An empty piece is the end.
std::optional<Property> Conversion::ReceivePieces(std::size_t announced, std::int64_t start) {
  Property all;
  all.bytes.reserve(announced);
  for (;;) {
    const auto earned = static_cast<std::int64_t>(all.bytes.size()) * 1000 / kTrickleBytesPerSecond;
    const std::int64_t slowest = start + kTricklePatienceMs + earned;
    if (!WaitFor(changed_, std::min(SteadyMilliseconds() + kOwnerPatienceMs, slowest))) return std::nullopt;
    Property piece = TakeProperty();
    if (piece.type == XCB_NONE) continue;  // the event was about a piece that had been taken already
    if (piece.bytes.empty()) return all;
    stalled_ = all.bytes.size() + piece.bytes.size() > kMaxValueBytes;
    if (stalled_) return std::nullopt;
    all.type = piece.type;
    all.format = piece.format;
    all.bytes += piece.bytes;
  }
}

bool Conversion::WaitFor(const bool& flag, std::int64_t deadline) {
  const bool ended = connection_.WaitUntil([&] { return flag || ownerGone_; }, std::min(deadline, limit_));
  stalled_ = !ended && !connection_.IsLost();
  return ended && flag;
}

Property Conversion::TakeProperty() {
  changed_ = false;
  return connection_.Take(window_.id(), connection_.atoms().answer, limit_);
}

void Conversion::Handle(const xcb_generic_event_t& event) {
  switch (event.response_type & ~0x80) {
    case XCB_SELECTION_NOTIFY: {
      const auto& answer = reinterpret_cast<const xcb_selection_notify_event_t&>(event);
      if (answer.requestor != window_.id() || answer.selection != selection_ || answer.target != target_) return;
      answered_ = true;
      accepted_ = answer.property == connection_.atoms().answer;
      return;
    }
    case XCB_PROPERTY_NOTIFY: {
      const auto& change = reinterpret_cast<const xcb_property_notify_event_t&>(event);
      if (change.window != window_.id() || change.atom != connection_.atoms().answer) return;
      if (change.state == XCB_PROPERTY_NEW_VALUE) changed_ = true;
      return;
    }
    case XCB_DESTROY_NOTIFY:
      if (reinterpret_cast<const xcb_destroy_notify_event_t&>(event).window == owner_) ownerGone_ = true;
      return;
    default:
      return;
  }
}

}  // namespace x11
