#include "designs/StoredText.h"

#include <algorithm>

#include "canonical/Properties.h"
#include "design/Names.h"

namespace service {
namespace {

constexpr char kEndOfName = '\x1F', kEndOfValue = '\x1E';  // no XML contains these

// Removes the part of `text` up to and including `end`, and returns it without `end`.
std::string_view Take(std::string_view& text, char end) {
  const std::string_view part = text.substr(0, text.find(end));
  text.remove_prefix(std::min(part.size() + 1, text.size()));
  return part;
}

}  // namespace

std::string StoredTextOf(const solution::Design& design, const solution::Element& element) {
  std::string text;
  const auto append = [&text](std::string_view name, std::string_view value) {
    (text += name) += kEndOfName;
    (text += value) += kEndOfValue;
  };
  append("name", element.name);
  for (const auto& property : PropertiesOf(design, element)) append(property.name, property.value);
  return text;
}

void ForEachValue(std::string_view storedText,
                  const std::function<void(std::string_view name, std::string_view value)>& use) {
  while (!storedText.empty()) {
    const std::string_view name = Take(storedText, kEndOfName);
    use(name, Take(storedText, kEndOfValue));
  }
}

std::string FoldedName(std::string_view fileName) { return solution::FoldCase(solution::WithoutExtension(fileName)); }

}  // namespace service
