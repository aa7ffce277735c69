// A pasteboard in memory: both views of one store, able to refuse any call, and recording every call in order.
#pragma once

#include <algorithm>
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
  /// The types that the general view's last declaration promised, in its order.
  std::vector<std::string> declared;
  /// Whether the system has the older view.
  bool hasItems = true;
  /// Calls to refuse, as they are recorded: "PutFlavor Mac-XMSS", "ClearItems", "SetString".
  std::set<std::string> refused;
  std::vector<std::string> calls;
  /// How often the content was replaced.
  int writes = 0;

  static constexpr char kText[] = "public.utf8-plain-text";

  /// The one that Pasteboard::Open gives access to; a test sets it.
  static FakePasteboard*& Current() {
    static FakePasteboard* current = nullptr;
    return current;
  }

  bool Accept(const std::string& call) {
    calls.push_back(call);
    return !refused.contains(call);
  }

  std::string Text() const { return Bytes(kText); }

  std::string Bytes(const std::string& type) const {
    for (const auto& item : items) {
      for (const auto& [name, bytes] : item) {
        if (name == type) return bytes;
      }
    }
    return {};
  }

  /// As if another program had replaced the content.
  void Replace(Item item) {
    items = {std::move(item)};
    declared.clear();
  }
};

class FakePasteboardAccess : public Pasteboard {
 public:
  explicit FakePasteboardAccess(FakePasteboard& fake) : fake_(fake) {}

  bool OpenItems() override { return fake_.hasItems && fake_.Accept("OpenItems"); }
  bool ClearItems() override {
    if (!fake_.Accept("ClearItems")) return false;
    fake_.items.clear();
    fake_.declared.clear();
    ++fake_.writes;
    return true;
  }
  bool PutFlavor(const std::string& type, const std::string& bytes) override {
    if (!fake_.Accept("PutFlavor " + type)) return false;
    if (fake_.items.empty()) fake_.items.emplace_back();
    fake_.items.front().emplace_back(type, bytes);
    return true;
  }
  void SynchronizeItems() override { fake_.Accept("SynchronizeItems"); }
  std::size_t ItemCount() override { return fake_.Accept("ItemCount") ? fake_.items.size() : 0; }
  bool CopyFlavor(std::size_t item, const std::string& type, std::string& bytes) override {
    if (!fake_.Accept("CopyFlavor " + type)) return false;
    return Find({fake_.items.at(item - 1)}, type, bytes);
  }

  void DeclareTypes(bool text, const std::vector<std::string>& types) override {
    ++fake_.writes;
    fake_.items.clear();
    fake_.declared = types;
    if (text) fake_.declared.insert(fake_.declared.begin(), FakePasteboard::kText);
    fake_.Accept("DeclareTypes");
  }
  bool SetData(const std::string& type, const std::string& bytes) override {
    if (!fake_.Accept("SetData " + type)) return false;
    if (std::find(fake_.declared.begin(), fake_.declared.end(), type) == fake_.declared.end()) return false;
    if (fake_.items.empty()) fake_.items.emplace_back();
    fake_.items.front().emplace_back(type, bytes);
    return true;
  }
  bool SetString(const std::string& text) override {
    if (!fake_.Accept("SetString")) return false;
    if (fake_.items.empty()) fake_.items.emplace_back();
    fake_.items.front().emplace_back(FakePasteboard::kText, text);
    return true;
  }
  std::string AvailableType(const std::vector<std::string>& candidates) override {
    std::string bytes;
    for (const auto& candidate : candidates) {
      if (Find(fake_.items, candidate, bytes)) return candidate;
    }
    return {};
  }
  bool DataForType(const std::string& type, std::string& bytes) override {
    return fake_.Accept("DataForType " + type) && Find(fake_.items, type, bytes);
  }
  std::string String() override { return fake_.Text(); }
  std::vector<std::string> Types() override {
    std::vector<std::string> types;
    for (const auto& item : fake_.items) {
      for (const auto& entry : item) types.push_back(entry.first);
    }
    return types;
  }

 private:
  static bool Find(const std::vector<FakePasteboard::Item>& items, const std::string& type, std::string& bytes) {
    for (const auto& item : items) {
      for (const auto& [name, data] : item) {
        if (name == type) return bytes = data, true;
      }
    }
    return false;
  }

  FakePasteboard& fake_;
};
