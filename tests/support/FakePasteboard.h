// A pasteboard in memory: both views of one store, able to refuse any call, and recording every call in order.
#pragma once

#include <algorithm>
#include <cstdint>
#include <functional>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "clipboard/Pasteboard.h"

struct FakePasteboard {
  using Entry = std::pair<std::string, std::string>;  // type and bytes
  using Item = std::vector<Entry>;

  /// The store. The general view shows the first item's entries, then those of the others.
  std::vector<Item> items;
  /// The types of the general view's last declaration, in its order.
  std::vector<std::string> declared;
  /// Whether the older view shows the content: only after it has been synchronized or cleared.
  bool isSynchronized = false;
  /// Whether the system has the older view.
  bool hasItems = true;
  /// Calls to refuse, as they are recorded: "PutFlavor Mac-XMSS", "ClearItems", "SetString".
  std::set<std::string> refused;
  std::vector<std::string> calls;
  /// Called before each call takes effect.
  std::function<void()> onCall;
  /// How often the content was replaced here.
  int writes = 0;
  /// A new number after each replacement, by the plug-in or another program, and in each fake; empty if changes are not
  /// reported.
  std::optional<std::uint64_t> change = NextChange();
  /// How often data was read, or searched for.
  int reads = 0;
  /// Whether the content is still the plug-in's own; only then may it be added to.
  bool isOurs = false;

  static constexpr char kText[] = "public.utf8-plain-text";

  /// The fake that Pasteboard::Open returns access to; a test sets it.
  static FakePasteboard*& Current() {
    static FakePasteboard* current = nullptr;
    return current;
  }

  static std::uint64_t NextChange() {
    static std::uint64_t last = 0;
    return ++last;
  }

  bool Accept(const std::string& call) {
    calls.push_back(call);
    if (onCall) onCall();
    return !refused.contains(call);
  }

  bool Put(const std::string& call, const std::string& type, const std::string& bytes) {
    if (!Accept(call) || !isOurs) return false;
    if (items.empty()) items.emplace_back();
    items.front().emplace_back(type, bytes);
    return true;
  }

  /// All entries, item after item.
  Item Entries() const {
    Item entries;
    for (const auto& item : items) entries.insert(entries.end(), item.begin(), item.end());
    return entries;
  }

  static bool Find(const Item& entries, const std::string& type, std::string& bytes) {
    const auto found = std::find_if(entries.begin(), entries.end(), [&](auto& entry) { return entry.first == type; });
    if (found == entries.end()) return false;
    bytes = found->second;
    return true;
  }

  std::string Bytes(const std::string& type) const {
    std::string bytes;
    Find(Entries(), type, bytes);
    return bytes;
  }
  std::string Text() const { return Bytes(kText); }

  void Clear() {
    items.clear();
    declared.clear();
    if (change) change = NextChange();
  }

  /// As if another program had replaced the content.
  void Replace(Item item) {
    Clear();
    items = {std::move(item)};
    isOurs = false;
  }
};

class FakePasteboardAccess : public Pasteboard {
 public:
  explicit FakePasteboardAccess(FakePasteboard& fake) : fake_(fake) {}

  std::optional<std::uint64_t> ChangeCount() override { return fake_.change; }

  bool OpenItems() override {
    fake_.isSynchronized = false;
    return fake_.hasItems && fake_.Accept("OpenItems");
  }
  bool ClearItems() override {
    if (!fake_.Accept("ClearItems")) return false;
    fake_.Clear();
    ++fake_.writes;
    return fake_.isOurs = fake_.isSynchronized = true;
  }
  bool PutFlavor(const std::string& type, const std::string& bytes) override {
    return fake_.Put("PutFlavor " + type, type, bytes);
  }
  void SynchronizeItems() override { fake_.isSynchronized = fake_.Accept("SynchronizeItems"); }
  std::size_t ItemCount() override {
    return fake_.isSynchronized && fake_.Accept("ItemCount") ? fake_.items.size() : 0;
  }
  bool CopyFlavor(std::size_t item, const std::string& type, std::string& bytes) override {
    ++fake_.reads;
    return fake_.Accept("CopyFlavor " + type) && FakePasteboard::Find(fake_.items.at(item - 1), type, bytes);
  }

  void DeclareTypes(bool text, const std::vector<std::string>& types) override {
    fake_.isOurs = fake_.Accept("DeclareTypes");
    if (!fake_.isOurs) return;
    ++fake_.writes;
    fake_.Clear();
    fake_.declared = types;
    if (text) fake_.declared.insert(fake_.declared.begin(), FakePasteboard::kText);
  }
  bool SetData(const std::string& type, const std::string& bytes) override {
    const auto& declared = fake_.declared;
    const bool isDeclared = std::find(declared.begin(), declared.end(), type) != declared.end();
    return isDeclared && fake_.Put("SetData " + type, type, bytes);
  }
  bool SetString(const std::string& text) override { return fake_.Put("SetString", FakePasteboard::kText, text); }
  std::string AvailableType(const std::vector<std::string>& candidates) override {
    std::string bytes;
    for (const auto& candidate : candidates) {
      if (FakePasteboard::Find(fake_.Entries(), candidate, bytes)) return candidate;
    }
    return {};
  }
  bool DataForType(const std::string& type, std::string& bytes) override {
    ++fake_.reads;
    return fake_.Accept("DataForType " + type) && FakePasteboard::Find(fake_.Entries(), type, bytes);
  }
  std::string String() override {
    ++fake_.reads;
    return fake_.Text();
  }
  std::vector<std::string> Types() override {
    std::vector<std::string> types;
    for (const auto& entry : fake_.Entries()) types.push_back(entry.first);
    return types;
  }

 private:
  FakePasteboard& fake_;
};
