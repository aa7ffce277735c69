#include "export/ParsedXml.h"

#include <string_view>
#include <utility>

#include "export/TagCheck.h"

namespace solution {
namespace {

constexpr int kParseOptions = rapidxml::parse_validate_closing_tags;

}  // namespace

ParsedXml::ParsedXml(std::string text) : text_(std::move(text)), lines_(text_) { Parse(); }

std::size_t ParsedXml::OffsetOf(XmlNode node) const {
  return static_cast<std::size_t>((node.IsElement() ? node.name() : node.value()).data() - text_.data());
}

void ParsedXml::Parse() {
  const auto lineOf = [this](std::size_t offset) { return std::to_string(lines_.LineOf(offset)); };
  const auto first = text_.find_first_not_of(kXmlWhiteSpace);
  if (first == std::string::npos || text_[first] != '<') throw Refusal{"is not XML"};
  if (const auto flaw = FindFlaw(text_)) {
    throw Refusal{"is damaged in line " + lineOf(flaw->offset) + ": " + flaw->reason};
  }
  try {
    document_.parse<kParseOptions>(text_.data());
  } catch (const rapidxml::parse_error& error) {
    const auto offset = static_cast<std::size_t>(error.where<char>() - text_.data());
    // The parser expects nothing else outside the root element.
    if (error.what() == std::string_view("expected <")) {
      throw Refusal{"has content outside the root element in line " + lineOf(offset)};
    }
    throw Refusal{"is not well-formed XML in line " + lineOf(offset) + ": " + error.what()};
  }
  if (!root()) throw Refusal{"is not XML"};
  if (const XmlNode second = root().next()) {
    throw Refusal{"has content outside the root element in line " + lineOf(OffsetOf(second))};
  }
}

}  // namespace solution
