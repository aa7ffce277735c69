#include "clipboard/x11/OwnerWatch.h"

#include <xcb/xfixes.h>

namespace x11 {

namespace {

constexpr std::uint32_t kMajorVersion = 1;  // the first that reports selections
constexpr std::uint32_t kChanges = XCB_XFIXES_SELECTION_EVENT_MASK_SET_SELECTION_OWNER |
                                   XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_WINDOW_DESTROY |
                                   XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_CLIENT_CLOSE;

}  // namespace

OwnerWatch::OwnerWatch(Connection& connection) : window_(connection) {
  xcb_connection_t* const xcb = connection.get();
  const auto* const extension = xcb_get_extension_data(xcb, &xcb_xfixes_id);
  if (extension == nullptr || extension->present == 0) return;
  // The server serves no other request of the extension before this one.
  const Owned<xcb_xfixes_query_version_reply_t> version(
      xcb_xfixes_query_version_reply(xcb, xcb_xfixes_query_version(xcb, kMajorVersion, 0), nullptr));
  if (version == nullptr) return;
  const auto selected =
      xcb_xfixes_select_selection_input_checked(xcb, window_.id(), connection.atoms().clipboard, kChanges);
  const Owned<xcb_generic_error_t> refusal(xcb_request_check(xcb, selected));
  if (refusal != nullptr) return;
  notification_ = static_cast<std::uint8_t>(extension->first_event + XCB_XFIXES_SELECTION_NOTIFY);
}

void OwnerWatch::Handle(const xcb_generic_event_t& event) {
  if (notification_ != 0 && (event.response_type & ~0x80) == notification_) ++changes_;
}

std::optional<std::uint64_t> OwnerWatch::Changes() const {
  return notification_ == 0 ? std::nullopt : std::make_optional<std::uint64_t>(changes_);
}

}  // namespace x11
