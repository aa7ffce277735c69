// The pasteboard on Linux: the X server's CLIPBOARD selection, or, without a server, a pasteboard inside the process.
// Linux has no older view.
#include <memory>
#include <optional>
#include <utility>

#include "Utf8.h"
#include "clipboard/Pasteboard.h"
#include "clipboard/PasteboardContent.h"
#include "clipboard/x11/Latin1.h"
#include "clipboard/x11/SystemClipboard.h"

namespace {

// In the order in which they are preferred.
constexpr const char* kTextTypes[] = {kPlainTextType, "text/plain;charset=utf-8", "STRING"};

class LinuxPasteboard : public Pasteboard {
 public:
  ~LinuxPasteboard() override {
    if (draft_ != nullptr) clipboard_.Publish(draft_);
  }

  std::optional<std::uint64_t> ChangeCount() override { return clipboard_.ChangeCount(); }

  void DeclareTypes(bool text, const std::vector<std::string>& types) override {
    auto draft = std::make_shared<PasteboardContent>(text, types);  // before Acquire: requests wait from then on
    draft_ = clipboard_.Acquire() ? std::move(draft) : nullptr;
  }
  bool SetData(const std::string& type, const std::string& bytes) override {
    return draft_ != nullptr && draft_->Set(type, bytes);
  }
  bool SetString(const std::string& text) override { return SetData(kPlainTextType, text); }

  std::string AvailableType(const std::vector<std::string>& candidates) override;
  bool DataForType(const std::string& type, std::string& bytes) override;
  std::string String() override;
  std::vector<std::string> Types() override;

 private:
  const PasteboardContent* OwnContent();
  const x11::Target* FindTarget(const std::string& type);
  std::optional<x11::Property> ReadFromOwner(const std::string& type);
  const std::vector<x11::Target>& Targets();

  x11::SystemClipboard& clipboard_ = x11::SystemClipboard::Shared();
  std::shared_ptr<PasteboardContent> draft_;         // what this operation writes
  std::optional<std::vector<x11::Target>> targets_;  // what another owner offers, asked once
};

/// Null when another program has it.
const PasteboardContent* LinuxPasteboard::OwnContent() {
  return draft_ != nullptr ? draft_.get() : clipboard_.OwnContent();
}

const std::vector<x11::Target>& LinuxPasteboard::Targets() {
  if (!targets_) targets_ = clipboard_.Targets();
  return *targets_;
}

/// Null when the owner does not offer `type`.
const x11::Target* LinuxPasteboard::FindTarget(const std::string& type) {
  for (const auto& target : Targets()) {
    if (target.name == type) return &target;
  }
  return nullptr;
}

std::optional<x11::Property> LinuxPasteboard::ReadFromOwner(const std::string& type) {
  const x11::Target* const target = FindTarget(type);
  return target == nullptr ? std::nullopt : clipboard_.Read(target->atom);
}

std::string LinuxPasteboard::AvailableType(const std::vector<std::string>& candidates) {
  const PasteboardContent* const own = OwnContent();
  for (const auto& type : candidates) {
    if (own != nullptr ? own->Find(type) != nullptr : FindTarget(type) != nullptr) return type;
  }
  return {};
}

bool LinuxPasteboard::DataForType(const std::string& type, std::string& bytes) {
  if (const PasteboardContent* const own = OwnContent(); own != nullptr) {
    const auto found = own->Find(type);
    if (found != nullptr) bytes = *found;
    return found != nullptr;
  }
  auto received = ReadFromOwner(type);
  if (received) bytes = std::move(received->bytes);
  return received.has_value();
}

std::string LinuxPasteboard::String() {
  if (OwnContent() != nullptr) {
    std::string text;
    DataForType(kPlainTextType, text);
    return text;
  }
  for (const char* const type : kTextTypes) {
    auto received = ReadFromOwner(type);
    if (!received) continue;
    std::string text =
        received->type == XCB_ATOM_STRING ? x11::Latin1ToUtf8(received->bytes) : std::move(received->bytes);
    return IsUtf8(text) ? text : "";
  }
  return {};
}

std::vector<std::string> LinuxPasteboard::Types() {
  if (const PasteboardContent* const own = OwnContent(); own != nullptr) return own->Types();
  std::vector<std::string> types;
  for (const auto& target : Targets()) types.push_back(target.name);
  return types;
}

}  // namespace

std::unique_ptr<Pasteboard> Pasteboard::Open() { return std::make_unique<LinuxPasteboard>(); }
