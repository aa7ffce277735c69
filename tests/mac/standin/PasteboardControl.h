// A test's hold on the stand-ins of Carbon's and AppKit's pasteboard. What is on the pasteboard, which calls it refuses
// and which it has seen is FakePasteboard::Current(), under the names of the seam's methods, so that the tests of the
// clipboard operations run on the macOS unit as they are. Besides those names, "GetItemIdentifier", "CFString" and
// "CFData" can be refused.
#pragma once

#include <cstddef>
#include <set>
#include <span>
#include <string>

#include "tests/support/FakePasteboard.h"

namespace PasteboardControl {

/// Calls of the general view in which AppKit raises because the pasteboard server is gone, named like refused ones.
inline std::set<std::string> raising;

/// Core Foundation objects, pasteboard references among them, that have not been released.
std::size_t CoreObjects();

/// The bytes of `type` in the first item that has it; null when none has.
inline const std::string* Find(std::span<const FakePasteboard::Item> items, const std::string& type) {
  for (const auto& item : items) {
    for (const auto& [name, bytes] : item) {
      if (name == type) return &bytes;
    }
  }
  return nullptr;
}

}  // namespace PasteboardControl
