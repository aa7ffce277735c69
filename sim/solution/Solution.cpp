// Look-ups in a file's design.
#include "solution/Solution.h"

#include <algorithm>

#include "calc/Unicode.h"

namespace sim {

std::u16string_view WithoutExtension(std::u16string_view fileName) {
  constexpr std::u16string_view kExtension = u".fmp12";
  if (fileName.size() <= kExtension.size()) return fileName;
  const auto stem = fileName.size() - kExtension.size();
  return calc::EqualIgnoringCase(fileName.substr(stem), kExtension) ? fileName.substr(0, stem) : fileName;
}

namespace {

template <typename Item, typename Test>
const Item* FindIf(const std::vector<Item>& items, Test test) {
  const auto found = std::find_if(items.begin(), items.end(), test);
  return found == items.end() ? nullptr : &*found;
}

template <typename Item>
const Item* FindById(const std::vector<Item>& items, int id) {
  return FindIf(items, [id](const Item& item) { return item.id == id; });
}

template <typename Item>
const Item* FindByName(const std::vector<Item>& items, std::u16string_view name) {
  return FindIf(items, [name](const Item& item) {
    if constexpr (requires { item.kind; }) {
      if (item.kind != ListItem::kItem) return false;
    }
    return calc::EqualIgnoringCase(item.name, name);
  });
}

}  // namespace

const BaseTable* Solution::FindBaseTable(int id) const { return FindById(baseTables, id); }

const BaseTable* Solution::TableOf(const TableOccurrence& occurrence) const {
  return occurrence.baseTableId ? FindBaseTable(*occurrence.baseTableId) : nullptr;
}

const TableOccurrence* Solution::FindOccurrence(int id) const { return FindById(occurrences, id); }

const TableOccurrence* Solution::FindOccurrence(std::u16string_view wanted) const {
  return FindByName(occurrences, wanted);
}

const Layout* Solution::FindLayout(std::u16string_view wanted) const { return FindByName(layouts, wanted); }

const Script* Solution::FindScript(std::u16string_view wanted) const { return FindByName(scripts, wanted); }

const PrivilegeSet* Solution::FindPrivilegeSet(int id) const { return FindById(privilegeSets, id); }

const Account* Solution::FindAccount(std::u16string_view wanted) const { return FindByName(accounts, wanted); }

}  // namespace sim
