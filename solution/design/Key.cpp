#include "design/Key.h"

#include <charconv>

namespace solution {
namespace {

// The word of the kind, except for folders, whose common word would not distinguish the three kinds.
std::string_view KeyWord(Kind kind) {
  switch (kind) {
    case Kind::kLayoutFolder:
      return "layoutFolder";
    case Kind::kScriptFolder:
      return "scriptFolder";
    case Kind::kCustomFunctionFolder:
      return "customFunctionFolder";
    default:
      return NamesOf(kind).word;
  }
}

// Takes a number from the start of `text`; -1 when there is none.
int TakeNumber(std::string_view& text) {
  int number = -1;
  const auto end = std::from_chars(text.data(), text.data() + text.size(), number).ptr;
  text.remove_prefix(static_cast<std::size_t>(end - text.data()));
  return number;
}

const Element* FindField(const Design& design, std::string_view ids) {
  const int table = TakeNumber(ids);
  if (!ids.starts_with('.')) return nullptr;
  ids.remove_prefix(1);
  const int field = TakeNumber(ids);
  return ids.empty() ? design.FindField(design.Find(Kind::kTable, table), field) : nullptr;
}

}  // namespace

std::string KeyOf(const Design& design, const Element& element) {
  if (design.Find(element.uuid) == &element) return std::string(element.uuid);
  std::string key = std::string(KeyWord(element.kind)) + ':';
  if (element.kind == Kind::kField) key += std::to_string(element.parent->id) + '.';
  return key + std::to_string(element.id);
}

const Element* FindKey(const Design& design, std::string_view key) {
  if (const Element* element = design.Find(key)) return element;
  const auto colon = key.find(':');
  if (colon == std::string_view::npos) return nullptr;
  std::string_view ids = key.substr(colon + 1);
  for (std::size_t i = 0; i < kKindCount; ++i) {
    const auto kind = static_cast<Kind>(i);
    if (KeyWord(kind) != key.substr(0, colon)) continue;
    if (kind == Kind::kField) return FindField(design, ids);
    const int id = TakeNumber(ids);
    return ids.empty() ? design.Find(kind, id) : nullptr;
  }
  return nullptr;
}

}  // namespace solution
