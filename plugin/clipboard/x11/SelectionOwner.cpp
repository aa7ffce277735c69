#include "clipboard/x11/SelectionOwner.h"

#include <algorithm>
#include <string>
#include <utility>

#include "clipboard/x11/Latin1.h"
#include "core/Clock.h"

namespace x11 {

namespace {

constexpr std::uint32_t kMaxMultiplePairs = 1024;  // far more than there are targets

Value Numbers(xcb_atom_t type, const std::vector<std::uint32_t>& numbers) {
  const auto* const first = reinterpret_cast<const char*>(numbers.data());
  return {type, 32, std::make_shared<const std::string>(first, first + numbers.size() * sizeof numbers[0])};
}

}  // namespace

SelectionOwner::SelectionOwner(Connection& connection)
    : connection_(connection), window_(connection), writer_(connection) {}

// An empty addition to a property makes the server report its clock.
std::optional<xcb_timestamp_t> SelectionOwner::ServerTime() {
  serverTime_.reset();
  xcb_change_property(connection_.get(), XCB_PROP_MODE_APPEND, window_.id(), connection_.atoms().answer,
                      XCB_ATOM_INTEGER, 32, 0, nullptr);
  connection_.WaitUntil([this] { return serverTime_.has_value(); }, SteadyMilliseconds() + ServerPatience().count());
  return serverTime_;
}

bool SelectionOwner::Acquire() {
  awaitsContent_ = false;
  const auto now = ServerTime();
  if (!now) return false;
  xcb_set_selection_owner(connection_.get(), window_.id(), connection_.atoms().clipboard, *now);
  awaitsContent_ = owns_ = connection_.OwnerOf(connection_.atoms().clipboard) == window_.id();
  if (!owns_) offers_.clear();
  acquired_ = *now;
  return owns_;
}

void SelectionOwner::Publish(const PasteboardContent& content) {
  awaitsContent_ = false;
  latin1_.reset();
  const Atoms& atoms = connection_.atoms();
  const auto& types = content.Types();
  const auto targets = connection_.Intern(types);
  offers_.clear();
  for (std::size_t i = 0; i < types.size(); ++i) {
    const auto bytes = content.Find(types[i]);
    if (bytes == nullptr || targets[i] == XCB_NONE) continue;
    if (targets[i] != atoms.plainText) {
      Add({targets[i], targets[i], bytes, false});
      continue;
    }
    Add({atoms.utf8String, atoms.utf8String, bytes, false});
    for (const auto alias : {atoms.plainText, atoms.utf8Mime}) Add({alias, alias, bytes, true});
    Add({atoms.text, atoms.utf8String, bytes, true});
    Add({XCB_ATOM_STRING, XCB_ATOM_STRING, bytes, true});
  }
}

// A declared type with the name of an alias takes precedence over the alias.
void SelectionOwner::Add(Offer offer) {
  const auto same =
      std::find_if(offers_.begin(), offers_.end(), [&](const Offer& other) { return other.target == offer.target; });
  if (same == offers_.end()) {
    offers_.push_back(std::move(offer));
  } else if (same->isAlias) {
    *same = std::move(offer);
  }
}

std::vector<xcb_atom_t> SelectionOwner::TargetsToSave() const {
  std::vector<xcb_atom_t> targets;
  for (const auto& offer : offers_) {
    if (!offer.isAlias) targets.push_back(offer.target);
  }
  return targets;
}

// Kept only while somebody reads it, and then only once.
PasteboardContent::Bytes SelectionOwner::AsLatin1(const std::string& text) {
  auto bytes = latin1_.lock();
  if (bytes == nullptr) latin1_ = bytes = std::make_shared<const std::string>(Utf8ToLatin1(text));
  return bytes;
}

std::optional<Value> SelectionOwner::Convert(xcb_atom_t target) {
  const Atoms& atoms = connection_.atoms();
  if (target == atoms.targets) {
    std::vector<std::uint32_t> all = {atoms.targets, atoms.multiple, atoms.timestamp, atoms.saveTargets};
    for (const auto& offer : offers_) all.push_back(offer.target);
    return Numbers(XCB_ATOM_ATOM, all);
  }
  if (target == atoms.timestamp) return Numbers(XCB_ATOM_INTEGER, {acquired_});
  if (target == atoms.saveTargets) return Numbers(atoms.null, {});

  for (const auto& offer : offers_) {
    if (offer.target != target) continue;
    const bool isLatin1 = offer.isAlias && target == XCB_ATOM_STRING;
    return Value{offer.type, 8, isLatin1 ? AsLatin1(*offer.bytes) : offer.bytes};
  }
  return std::nullopt;
}

bool SelectionOwner::Answer(xcb_window_t requestor, xcb_atom_t target, xcb_atom_t property) {
  if (property == XCB_NONE) return false;
  auto value = Convert(target);
  if (value) writer_.Put(requestor, property, std::move(*value));
  return value.has_value();
}

// The property holds pairs of a target and the property for it; a pair that cannot be served loses its property.
bool SelectionOwner::AnswerMultiple(xcb_window_t requestor, xcb_atom_t property) {
  if (property == XCB_NONE) return false;
  xcb_connection_t* const xcb = connection_.get();
  const Owned<xcb_get_property_reply_t> reply(xcb_get_property_reply(
      xcb, xcb_get_property(xcb, 0, requestor, property, XCB_GET_PROPERTY_TYPE_ANY, 0, 2 * kMaxMultiplePairs),
      nullptr));
  if (reply == nullptr || reply->format != 32) return false;
  const auto* const first = static_cast<const xcb_atom_t*>(xcb_get_property_value(reply.get()));
  std::vector<xcb_atom_t> pairs(first, first + (reply->value_len & ~1u));
  bool complete = true;
  for (std::size_t i = 0; i < pairs.size(); i += 2) {
    if (Answer(requestor, pairs[i], pairs[i + 1])) continue;
    pairs[i + 1] = XCB_NONE;
    complete = false;
  }
  if (!complete) {
    xcb_change_property(xcb, XCB_PROP_MODE_REPLACE, requestor, property, connection_.atoms().atomPair, 32,
                        static_cast<std::uint32_t>(pairs.size()), pairs.data());
  }
  return true;
}

// The time of a request is not compared with the time of the acquisition: a key press just before this program
// refreshed the clipboard should still paste the content.
void SelectionOwner::HandleRequest(const xcb_selection_request_event_t& request) {
  const Atoms& atoms = connection_.atoms();
  const bool isMultiple = request.target == atoms.multiple;
  // Old programs give no property and look for the answer under the target's name.
  const xcb_atom_t property = request.property == XCB_NONE && !isMultiple ? request.target : request.property;
  const bool valid = owns_ && request.selection == atoms.clipboard;
  const bool answered = valid && (isMultiple ? AnswerMultiple(request.requestor, property)
                                             : Answer(request.requestor, request.target, property));
  struct {
    xcb_selection_notify_event_t event;
    char padding[8];
  } message{};
  static_assert(sizeof message == 32, "the size of every event on the wire");
  message.event.response_type = XCB_SELECTION_NOTIFY;
  message.event.time = request.time;
  message.event.requestor = request.requestor;
  message.event.selection = request.selection;
  message.event.target = request.target;
  message.event.property = answered ? property : xcb_atom_t{XCB_NONE};
  xcb_send_event(connection_.get(), 0, request.requestor, XCB_EVENT_MASK_NO_EVENT,
                 reinterpret_cast<const char*>(&message));
}

// The event may be about an ownership that was lost before this one was acquired, so the server is asked.
void SelectionOwner::HandleClear() {
  owns_ = connection_.OwnerOf(connection_.atoms().clipboard) == window_.id();
  if (!owns_) offers_.clear();
}

void SelectionOwner::Handle(const xcb_generic_event_t& event) {
  switch (event.response_type & ~0x80) {
    case XCB_SELECTION_REQUEST:
      HandleRequest(reinterpret_cast<const xcb_selection_request_event_t&>(event));
      break;
    case XCB_SELECTION_CLEAR:
      HandleClear();
      break;
    case XCB_PROPERTY_NOTIFY:
      if (const auto& change = reinterpret_cast<const xcb_property_notify_event_t&>(event);
          change.window == window_.id()) {
        serverTime_ = change.time;
      }
      break;
    default:
      break;
  }
  writer_.Handle(event);
}

}  // namespace x11
