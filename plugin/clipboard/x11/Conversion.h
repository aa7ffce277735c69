// One request to the owner of a selection, and the wait for its answer. For the connection's thread.
#pragma once

#include <xcb/xcb.h>

#include <cstdint>
#include <optional>
#include <vector>

#include "clipboard/x11/Connection.h"

namespace x11 {

/// How long an owner may be silent, at the start and between two pieces.
inline constexpr std::int64_t kOwnerPatienceMs = 500;
/// How long a slow one may take in total: this, and a second for each kTrickleBytesPerSecond received.
inline constexpr std::int64_t kTricklePatienceMs = 5000;
inline constexpr std::int64_t kTrickleBytesPerSecond = std::int64_t{1} << 18;

/// Has its own window, so that a late answer disappears with it.
class Conversion {
 public:
  /// `owner` is the owner of `selection`. No wait lasts beyond `limit` (SteadyMilliseconds).
  Conversion(Connection& connection, xcb_window_t owner, xcb_atom_t selection, std::int64_t limit);
  ~Conversion();
  Conversion(const Conversion&) = delete;
  Conversion& operator=(const Conversion&) = delete;

  /// Asks for `target`, with `argument`, if it is not empty, in the property that the answer will replace.
  void Ask(xcb_atom_t target, const std::vector<xcb_atom_t>& argument = {});
  /// True when the owner has answered before `deadline`, even with a refusal.
  bool AwaitAnswer(std::int64_t deadline);
  /// Waits for the answer, in one piece or many, and returns it; nothing when the owner refuses, stalls or dies.
  std::optional<Property> Receive();
  /// Whether the owner, though alive, has let a deadline or the limit pass, or has sent more than kMaxValueBytes.
  bool HasStalled() const { return stalled_; }

  void Handle(const xcb_generic_event_t& event);

 private:
  bool WaitFor(const bool& flag, std::int64_t deadline);
  Property TakeProperty();
  std::optional<Property> ReceivePieces(std::size_t announced, std::int64_t start);

  Connection& connection_;
  const xcb_window_t owner_;
  const xcb_atom_t selection_;
  const std::int64_t limit_;
  const Window window_;
  xcb_atom_t target_ = XCB_NONE;
  bool answered_ = false;
  bool accepted_ = false;
  bool changed_ = false;  // the property, since it was last taken
  bool ownerGone_ = false;
  bool stalled_ = false;
};

}  // namespace x11
