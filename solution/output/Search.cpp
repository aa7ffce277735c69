#include "output/Search.h"

#include "canonical/Properties.h"
#include "design/Names.h"

namespace solution {
namespace {

void SearchLines(const Element& element, const std::string& property, std::string_view value, const std::string& folded,
                 const std::function<void(const SearchHit&)>& found) {
  for (std::size_t line = 1; !value.empty(); ++line) {
    const std::string_view text = value.substr(0, value.find('\n'));
    if (FoldCase(text).find(folded) != std::string::npos) found({&element, property, line, std::string(text)});
    value.remove_prefix(std::min(text.size() + 1, value.size()));
  }
}

}  // namespace

void Search(const Design& design, std::string_view text, const std::function<void(const SearchHit&)>& found) {
  const std::string folded = FoldCase(text);
  if (folded.empty()) return;
  for (const Element& element : design.elements()) {
    SearchLines(element, "name", element.name, folded, found);
    for (const Property& property : PropertiesOf(design, element)) {
      SearchLines(element, property.name, property.value, folded, found);
    }
  }
}

}  // namespace solution
