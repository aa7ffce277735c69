#include "output/Search.h"

#include <algorithm>

#include "canonical/Properties.h"
#include "design/Names.h"

namespace solution {

void SearchLines(std::string_view value, const std::string& folded,
                 const std::function<void(std::size_t line, std::string_view text)>& found) {
  for (std::size_t line = 1; !value.empty(); ++line) {
    const std::string_view text = value.substr(0, value.find('\n'));
    if (FoldCase(text).find(folded) != std::string::npos) found(line, text);
    value.remove_prefix(std::min(text.size() + 1, value.size()));
  }
}

void Search(const Design& design, std::string_view text, const std::function<void(const SearchHit&)>& found) {
  const std::string folded = FoldCase(text);
  if (folded.empty()) return;
  for (const Element& element : design.elements()) {
    const auto search = [&](const std::string& property, std::string_view value) {
      SearchLines(value, folded, [&](std::size_t line, std::string_view hit) {
        found({&element, property, line, std::string(hit)});
      });
    };
    search("name", element.name);
    for (const Property& property : PropertiesOf(design, element)) search(property.name, property.value);
  }
}

}  // namespace solution
