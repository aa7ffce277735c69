// Counts how often the CLIPBOARD selection changes hands, as the server's XFIXES extension reports it. For the
// connection's thread, except where a method says otherwise.
#pragma once

#include <xcb/xcb.h>

#include <atomic>
#include <cstdint>
#include <optional>

#include "clipboard/x11/Connection.h"

namespace x11 {

class OwnerWatch {
 public:
  /// Asks the server to report changes. It may lack the extension, or refuse.
  explicit OwnerWatch(Connection& connection);

  void Handle(const xcb_generic_event_t& event);
  /// Nothing when the server reports no changes. An owner that replaces its content without taking the selection again
  /// makes no change. Any thread.
  std::optional<std::uint64_t> Changes() const;

 private:
  const Window window_;
  std::uint8_t notification_ = 0;  // the event's number on this server
  std::atomic<std::uint64_t> changes_ = 0;
};

}  // namespace x11
