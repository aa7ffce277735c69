// Reads the CLIPBOARD selection from the programs that own it. For the connection's thread.
#pragma once

#include <xcb/xcb.h>

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "clipboard/x11/Connection.h"
#include "clipboard/x11/Conversion.h"

namespace x11 {

/// A type in which the owner offers the clipboard's content.
struct Target {
  std::string name;
  xcb_atom_t atom;
};

/// How long an owner that was too slow is not asked again. The pause ends early if its window is destroyed, because the
/// server soon gives the window's ID to another program.
inline constexpr std::int64_t kStalledOwnerPauseMs = 5000;
/// How long a clipboard manager may take to save the content.
inline constexpr std::int64_t kHandOverLimitMs = 2000;

class SelectionReader {
 public:
  explicit SelectionReader(Connection& connection) : connection_(connection) {}

  // `limit` is a time of SteadyMilliseconds, or ReadingLimit::kNone.

  /// The types of the clipboard in its owner's order; none when it has no owner or the owner does not answer.
  std::vector<Target> Targets(std::int64_t limit);
  /// The clipboard as `target`; nothing when the owner refuses, stalls, dies, or has not sent everything by `limit`.
  std::optional<Property> Read(xcb_atom_t target, std::int64_t limit);
  /// Has the clipboard manager, if one runs, save `targets` of the clipboard, which this program owns.
  void HandOver(const std::vector<xcb_atom_t>& targets);

  void Handle(const xcb_generic_event_t& event);

 private:
  bool IsStalled(xcb_window_t owner, std::int64_t limit);
  void Remember(xcb_window_t stalledOwner);

  Connection& connection_;
  std::optional<Conversion> conversion_;
  xcb_window_t stalledOwner_ = XCB_NONE;
  std::int64_t stalledUntil_ = 0;
  bool stalledAtLimit_ = false;  // it may be fast enough for a read without a limit
};

}  // namespace x11
