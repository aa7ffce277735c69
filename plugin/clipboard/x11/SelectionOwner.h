// Owns the CLIPBOARD selection and answers the other programs' requests for it. For the connection's thread, except
// where a method says otherwise.
#pragma once

#include <xcb/xcb.h>

#include <atomic>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "clipboard/PasteboardContent.h"
#include "clipboard/x11/Connection.h"
#include "clipboard/x11/PropertyWriter.h"

namespace x11 {

class SelectionOwner {
 public:
  explicit SelectionOwner(Connection& connection);

  /// Takes the selection. If this returns true, no event may be handled before Publish sets the content.
  bool Acquire();
  void Publish(const PasteboardContent& content);
  bool AwaitsContent() const { return awaitsContent_; }

  /// Any thread.
  bool Owns() const { return owns_; }
  /// The targets that a clipboard manager should save, so that the content outlives this program.
  std::vector<xcb_atom_t> TargetsToSave() const;

  void Handle(const xcb_generic_event_t& event);
  /// The transfers that requests have started.
  PropertyWriter& Transfers() { return writer_; }

 private:
  struct Offer {
    xcb_atom_t target;
    xcb_atom_t type;
    PasteboardContent::Bytes bytes;
    bool isAlias;  // another name of the text, for programs that do not know UTF8_STRING
  };

  std::optional<xcb_timestamp_t> ServerTime();
  void Add(Offer offer);
  PasteboardContent::Bytes AsLatin1(const std::string& text);
  std::optional<Value> Convert(xcb_atom_t target);
  bool Answer(xcb_window_t requestor, xcb_atom_t target, xcb_atom_t property);
  bool AnswerMultiple(xcb_window_t requestor, xcb_atom_t property);
  void HandleRequest(const xcb_selection_request_event_t& request);
  void HandleClear();

  Connection& connection_;
  const Window window_;
  PropertyWriter writer_;
  std::optional<xcb_timestamp_t> serverTime_;
  xcb_timestamp_t acquired_ = XCB_CURRENT_TIME;
  std::vector<Offer> offers_;
  std::weak_ptr<const std::string> latin1_;  // the text, converted
  bool awaitsContent_ = false;
  std::atomic<bool> owns_ = false;
};

}  // namespace x11
