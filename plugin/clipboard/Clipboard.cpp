// The rules of the clipboard operations, over the two views of the system pasteboard.
#include "clipboard/Clipboard.h"

#include <cstddef>
#include <utility>
#include <vector>

#include "Utf8.h"
#include "clipboard/ClipboardTypes.h"
#include "clipboard/Pasteboard.h"

namespace {

constexpr char kStringRefused[] = "ERROR: NSPasteboard setString failed";
constexpr char kDataRefused[] = "ERROR: NSPasteboard setData failed for type: ";
constexpr std::size_t kHeaderBytes = 4;

using Names = std::vector<std::string>;

// FileMaker reads its private flavours through the older view, so that one comes first.
bool WriteItems(Pasteboard& pasteboard, const Names& candidates, const std::string& xml) {
  if (!pasteboard.OpenItems() || !pasteboard.ClearItems()) return false;
  for (const auto& type : candidates) {
    if (!pasteboard.PutFlavor(type, xml)) return false;
  }
  if (!pasteboard.PutFlavor(kPlainTextType, xml)) return false;
  pasteboard.SynchronizeItems();
  return true;
}

bool WriteTypes(Pasteboard& pasteboard, const Names& candidates, const std::string& xml, std::string& error) {
  Names types;
  for (const auto& type : candidates) {
    if (IsUtf8(type)) types.push_back(type);
  }
  pasteboard.DeclareTypes(true, types);
  bool complete = true;
  for (const auto& type : types) {
    if (pasteboard.SetData(type, xml)) continue;
    error = kDataRefused + type;
    complete = false;
  }
  if (IsUtf8(xml) && !pasteboard.SetString(xml)) {
    error = kStringRefused;
    complete = false;
  }
  return complete;
}

// An earlier item's lower-ranked flavour beats a later item's higher-ranked one.
bool ReadItems(Pasteboard& pasteboard, const Names& candidates, std::string& data) {
  if (!pasteboard.OpenItems()) return false;
  pasteboard.SynchronizeItems();
  const std::size_t count = pasteboard.ItemCount();
  for (std::size_t item = 1; item <= count; ++item) {
    for (const auto& type : candidates) {
      if (pasteboard.CopyFlavor(item, type, data)) return true;
    }
  }
  return false;
}

bool ReadTypes(Pasteboard& pasteboard, const Names& candidates, std::string& data) {
  const std::string type = pasteboard.AvailableType(candidates);
  return !type.empty() && pasteboard.DataForType(type, data);
}

// The host may put a header in front of the XML in its private flavours.
void DropHeader(std::string& data) {
  if (data.size() <= kHeaderBytes || data.front() == '<') return;
  if (HoldsSnippet(data, kHeaderBytes)) data.erase(0, kHeaderBytes);
}

}  // namespace

namespace Clipboard {

std::string BuildClipboardType(const std::string& code) { return "Mac-" + code; }

bool SetXML(const std::string& code, const std::string& xml, std::string& error) {
  const Names candidates = BuildClipboardTypeCandidates(code);
  const auto pasteboard = Pasteboard::Open();
  return WriteItems(*pasteboard, candidates, xml) || WriteTypes(*pasteboard, candidates, xml, error);
}

bool GetXML(const std::string& code, std::string& xml, std::string&) {
  const Names candidates = BuildClipboardTypeCandidates(code);
  const auto pasteboard = Pasteboard::Open();
  std::string data;
  if (ReadItems(*pasteboard, candidates, data) || ReadTypes(*pasteboard, candidates, data)) DropHeader(data);
  xml = std::move(data);
  return true;
}

std::optional<std::uint64_t> ChangeCount() { return Pasteboard::Open()->ChangeCount(); }

std::vector<std::string> Types() { return Pasteboard::Open()->Types(); }

bool GetFormats(std::string& list, std::string&) {
  std::string names;
  for (const auto& type : Types()) names += type + '\n';
  list = std::move(names);
  return true;
}

bool GetText(std::string& text, std::string&) {
  text = Pasteboard::Open()->String();
  return true;
}

bool SetText(const std::string& text, std::string& error) {
  const auto pasteboard = Pasteboard::Open();
  const bool valid = IsUtf8(text);  // otherwise the system cannot make a string of it, and the clipboard should stay
  if (valid) pasteboard->DeclareTypes(true, {});
  if (valid && pasteboard->SetString(text)) return true;
  error = kStringRefused;
  return false;
}

}  // namespace Clipboard
