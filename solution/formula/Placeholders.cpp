#include "formula/Placeholders.h"

#include <algorithm>
#include <utility>

#include "design/Names.h"

namespace solution {
namespace {

constexpr std::size_t kLongest = 60;

constexpr std::pair<std::string_view, Kind> kKindWords[] = {
    {"func", Kind::kCustomFunction}, {"funk", Kind::kCustomFunction}, {"fonc", Kind::kCustomFunction},
    {"funz", Kind::kCustomFunction}, {"tab", Kind::kTableOccurrence}, {"script", Kind::kScript},
    {"layout", Kind::kLayout},
};

// The words that identify a placeholder in a comment, where other text in angle brackets is common.
constexpr std::string_view kMissingWords[] = {"missing",  "nicht vorhanden", "manquant",
                                              "mancante", "ontbreekt",       "saknas"};

}  // namespace

std::string_view PlaceholderAt(std::string_view text) {
  if (!text.starts_with('<')) return {};
  const auto end = text.substr(0, kLongest).find_first_of("<>\"=;()[]\r\n&+*/", 1);
  if (end == std::string_view::npos || text[end] != '>' || end < 3 || text[1] == ' ' || text[end - 1] == ' ') return {};
  return text.substr(0, end + 1);
}

bool IsPlaceholder(std::string_view name) { return !name.empty() && PlaceholderAt(name) == name; }

std::vector<std::string_view> PlaceholdersInComment(std::string_view formula) {
  std::vector<std::string_view> placeholders;
  if (!formula.starts_with("/*") || !formula.ends_with("*/")) return placeholders;
  for (auto at = formula.find('<'); at != std::string_view::npos; at = formula.find('<', at + 1)) {
    const std::string_view placeholder = PlaceholderAt(formula.substr(at));
    const std::string folded = FoldCase(placeholder);
    const auto contains = [&folded](std::string_view word) { return folded.find(word) != std::string_view::npos; };
    if (std::any_of(std::begin(kMissingWords), std::end(kMissingWords), contains)) placeholders.push_back(placeholder);
  }
  return placeholders;
}

Kind KindOfPlaceholder(std::string_view placeholder) {
  const std::string folded = FoldCase(placeholder.substr(1));
  for (const auto& [word, kind] : kKindWords) {
    if (folded.starts_with(word)) return kind;
  }
  return Kind::kField;
}

}  // namespace solution
