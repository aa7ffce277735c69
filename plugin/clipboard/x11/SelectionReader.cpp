#include "clipboard/x11/SelectionReader.h"

#include <algorithm>
#include <cstring>
#include <string_view>
#include <utility>

#include "Utf8.h"
#include "clipboard/Pasteboard.h"
#include "clipboard/PasteboardContent.h"
#include "clipboard/ReadingLimit.h"
#include "core/Clock.h"

namespace x11 {

namespace {

constexpr std::size_t kMaxTargets = 1024;  // no working program offers more

// Targets that an owner offers in addition to its content.
constexpr std::string_view kProtocolTargets[] = {"TARGETS", "MULTIPLE",         "TIMESTAMP",      "SAVE_TARGETS",
                                                 "DELETE",  "INSERT_SELECTION", "INSERT_PROPERTY"};

bool IsContent(std::string_view name) {
  const auto end = std::end(kProtocolTargets);
  return !name.empty() && IsUtf8(name) && std::find(std::begin(kProtocolTargets), end, name) == end;
}

std::vector<xcb_atom_t> AtomsIn(const Property& received) {
  if (received.format != 32) return {};
  std::vector<xcb_atom_t> atoms(std::min(received.bytes.size() / sizeof(xcb_atom_t), kMaxTargets));
  if (!atoms.empty()) std::memcpy(atoms.data(), received.bytes.data(), atoms.size() * sizeof(xcb_atom_t));
  return atoms;
}

}  // namespace

std::vector<Target> SelectionReader::Targets(std::int64_t limit) {
  const auto answer = Read(connection_.atoms().targets, limit);
  if (!answer) return {};
  const auto atoms = AtomsIn(*answer);
  auto names = connection_.NamesOf(atoms);
  std::vector<Target> targets;
  for (std::size_t i = 0; i < atoms.size(); ++i) {
    if (atoms[i] == connection_.atoms().utf8String) names[i] = kPlainTextType;
    const bool isNew =
        std::none_of(targets.begin(), targets.end(), [&](const Target& t) { return t.name == names[i]; });
    if (isNew && IsContent(names[i])) targets.push_back({std::move(names[i]), atoms[i]});
  }
  return targets;
}

std::optional<Property> SelectionReader::Read(xcb_atom_t target, std::int64_t limit) {
  const xcb_window_t owner = connection_.OwnerOf(connection_.atoms().clipboard);
  // They may include the end of an earlier owner whose window had the same ID.
  connection_.HandleArrivedEvents();
  if (owner == XCB_NONE || IsStalled(owner, limit)) return std::nullopt;
  conversion_.emplace(connection_, owner, connection_.atoms().clipboard, limit);
  conversion_->Ask(target);
  auto received = conversion_->Receive();
  stalledAtLimit_ = SteadyMilliseconds() >= limit;
  Remember(conversion_->HasStalled() || stalledAtLimit_ ? owner : xcb_window_t{XCB_NONE});
  conversion_.reset();
  return received;
}

void SelectionReader::HandOver(const std::vector<xcb_atom_t>& targets) {
  const xcb_atom_t managers = connection_.atoms().clipboardManager;
  const xcb_window_t manager = connection_.OwnerOf(managers);
  if (manager == XCB_NONE || targets.empty()) return;
  conversion_.emplace(connection_, manager, managers, ReadingLimit::kNone);
  conversion_->Ask(connection_.atoms().saveTargets, targets);
  conversion_->AwaitAnswer(SteadyMilliseconds() + kHandOverLimitMs);
  conversion_.reset();
}

void SelectionReader::Handle(const xcb_generic_event_t& event) {
  if (conversion_) conversion_->Handle(event);
  if ((event.response_type & ~0x80) != XCB_DESTROY_NOTIFY) return;
  if (reinterpret_cast<const xcb_destroy_notify_event_t&>(event).window == stalledOwner_) Remember(XCB_NONE);
}

bool SelectionReader::IsStalled(xcb_window_t owner, std::int64_t limit) {
  if (stalledAtLimit_ && limit == ReadingLimit::kNone) return false;
  return owner == stalledOwner_ && SteadyMilliseconds() < stalledUntil_;
}

// The window stays watched for as long as it is remembered.
void SelectionReader::Remember(xcb_window_t stalledOwner) {
  if (stalledOwner != XCB_NONE) connection_.Watch(stalledOwner);
  if (stalledOwner_ != XCB_NONE) connection_.Unwatch(stalledOwner_);
  stalledOwner_ = stalledOwner;
  stalledUntil_ = SteadyMilliseconds() + kStalledOwnerPauseMs;
}

}  // namespace x11
