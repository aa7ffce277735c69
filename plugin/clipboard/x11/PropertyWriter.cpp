#include "clipboard/x11/PropertyWriter.h"

#include <algorithm>
#include <limits>

#include "core/Clock.h"

namespace x11 {

void PropertyWriter::Put(xcb_window_t window, xcb_atom_t property, Value value) {
  const std::pair key(window, property);
  if (const auto unfinished = transfers_.find(key); unfinished != transfers_.end()) End(unfinished);

  const std::size_t size = value.bytes->size();
  if (size <= connection_.MaxPropertyBytes()) {
    xcb_change_property(connection_.get(), XCB_PROP_MODE_REPLACE, window, property, value.type, value.format,
                        static_cast<std::uint32_t>(size / (value.format / 8)), value.bytes->data());
    return;
  }
  connection_.Watch(window);
  const std::int64_t deadline = SteadyMilliseconds() + kReceiverPatienceMs;
  transfers_.emplace(key, Transfer{std::move(value), 0, deadline});
  nextDeadline_ = std::min(nextDeadline_, deadline);
  const auto atLeast =
      static_cast<std::uint32_t>(std::min<std::size_t>(size, std::numeric_limits<std::int32_t>::max()));
  xcb_change_property(connection_.get(), XCB_PROP_MODE_REPLACE, window, property, connection_.atoms().incremental, 32,
                      1, &atLeast);
}

void PropertyWriter::Handle(const xcb_generic_event_t& event) {
  if ((event.response_type & ~0x80) == XCB_PROPERTY_NOTIFY) {
    const auto& change = reinterpret_cast<const xcb_property_notify_event_t&>(event);
    if (change.state != XCB_PROPERTY_DELETE) return;
    const auto transfer = transfers_.find({change.window, change.atom});
    if (transfer != transfers_.end()) PutNextPiece(transfer);
  } else if ((event.response_type & ~0x80) == XCB_DESTROY_NOTIFY) {
    const xcb_window_t window = reinterpret_cast<const xcb_destroy_notify_event_t&>(event).window;
    auto transfer = transfers_.lower_bound({window, 0});
    while (transfer != transfers_.end() && transfer->first.first == window) transfer = End(transfer);
  }
}

void PropertyWriter::DropStalled() {
  const std::int64_t now = SteadyMilliseconds();
  if (now < nextDeadline_) return;
  nextDeadline_ = std::numeric_limits<std::int64_t>::max();
  for (auto transfer = transfers_.begin(); transfer != transfers_.end();) {
    if (transfer->second.deadline <= now) {
      transfer = End(transfer);
    } else {
      nextDeadline_ = std::min(nextDeadline_, transfer->second.deadline);
      ++transfer;
    }
  }
}

// The last piece has no bytes: that is how the receiver learns that it has everything.
void PropertyWriter::PutNextPiece(Transfers::iterator transfer) {
  const auto [window, property] = transfer->first;
  auto& [value, offset, deadline] = transfer->second;
  const std::size_t size = std::min(value.bytes->size() - offset, connection_.MaxPropertyBytes());
  xcb_change_property(connection_.get(), XCB_PROP_MODE_REPLACE, window, property, value.type, value.format,
                      static_cast<std::uint32_t>(size / (value.format / 8)), value.bytes->data() + offset);
  offset += size;
  deadline = SteadyMilliseconds() + kReceiverPatienceMs;
  if (size == 0) End(transfer);
}

PropertyWriter::Transfers::iterator PropertyWriter::End(Transfers::iterator transfer) {
  connection_.Unwatch(transfer->first.first);
  return transfers_.erase(transfer);
}

}  // namespace x11
