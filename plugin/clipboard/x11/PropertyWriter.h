// Writes values into other programs' properties: at once, or, if a value is too large for one request, piece by piece
// as the other program deletes the pieces.
#pragma once

#include <xcb/xcb.h>

#include <cstddef>
#include <cstdint>
#include <limits>
#include <map>
#include <memory>
#include <string>
#include <utility>

#include "clipboard/x11/Connection.h"

namespace x11 {

/// What a selection is converted to.
struct Value {
  xcb_atom_t type;
  std::uint8_t format;  ///< bits of an element, 8 or 32
  std::shared_ptr<const std::string> bytes;
};

/// How long the receiver of a large value may leave a piece untouched before it is given up.
inline constexpr std::int64_t kReceiverPatienceMs = 10'000;

class PropertyWriter {
 public:
  explicit PropertyWriter(Connection& connection) : connection_(connection) {}

  void Put(xcb_window_t window, xcb_atom_t property, Value value);
  /// Continues the transfers that `event` concerns.
  void Handle(const xcb_generic_event_t& event);

  /// When DropStalled is next needed.
  std::int64_t NextDeadline() const { return nextDeadline_; }
  void DropStalled();

 private:
  struct Transfer {
    Value value;
    std::size_t offset;
    std::int64_t deadline;
  };
  using Transfers = std::map<std::pair<xcb_window_t, xcb_atom_t>, Transfer>;

  void PutNextPiece(Transfers::iterator transfer);
  Transfers::iterator End(Transfers::iterator transfer);

  Connection& connection_;
  Transfers transfers_;
  std::int64_t nextDeadline_ = std::numeric_limits<std::int64_t>::max();  // not after the first one of a transfer
};

}  // namespace x11
