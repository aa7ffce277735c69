#include "export/TagCheck.h"

#include <algorithm>
#include <iterator>

namespace solution {
namespace {

constexpr int kDeepest = 500;  // real layouts reach about 40

struct Section {
  std::string_view start, end;
};
constexpr Section kSections[] = {{"<![CDATA[", "]]>"}, {"<!--", "-->"}, {"<?", "?>"}};

/// Returns the length of the start tag that `text` begins with, 0 if a quotation mark is out of place.
std::size_t TagLength(std::string_view text) {
  const auto name = text.substr(1, text.find_first_of(" \t\r\n/>", 1) - 1);
  if (name.find_first_of("\"'=") != std::string_view::npos) return 0;
  std::size_t at = 1 + name.size();
  while ((at = text.find_first_of("\"'>", at)) != std::string_view::npos && text[at] != '>') {
    const auto before = text.find_last_not_of(kXmlWhiteSpace, at - 1);
    if (text[before] != '=') return 0;
    at = text.find(text[at], at + 1);
    if (at == std::string_view::npos) break;
    ++at;
  }
  return at == std::string_view::npos ? text.size() : at + 1;
}

}  // namespace

std::optional<Flaw> FindFlaw(std::string_view text) {
  int depth = 0;
  for (std::size_t at = text.find('<'); at < text.size(); at = text.find('<', at)) {
    const std::string_view rest = text.substr(at);
    const auto section = std::find_if(std::begin(kSections), std::end(kSections),
                                      [rest](const Section& s) { return rest.starts_with(s.start); });
    if (section != std::end(kSections)) {
      at = std::min(text.find(section->end, at + section->start.size()), text.size());
    } else if (rest.starts_with("<!")) {
      return Flaw{at, "a document type"};
    } else if (rest.starts_with("</")) {
      --depth;
      ++at;
    } else {
      const std::size_t length = TagLength(rest);
      if (length == 0) return Flaw{at, "a quotation mark outside an attribute value"};
      if (!rest.substr(0, length).ends_with("/>") && depth++ > kDeepest) {
        return Flaw{at, "elements are nested too deeply"};
      }
      at += length;
    }
  }
  return std::nullopt;
}

}  // namespace solution
