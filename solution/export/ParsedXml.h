// An XML text from FileMaker and its tree.
#pragma once

#include <string>

#include "export/ExportText.h"
#include "export/XmlTree.h"

namespace solution {

/// The tree points into the text, so this is neither copied nor moved.
class ParsedXml {
 public:
  /// `text` is UTF-8. Throws Refusal, with the line, when it is not one well-formed element.
  explicit ParsedXml(std::string text);
  ParsedXml(const ParsedXml&) = delete;
  ParsedXml& operator=(const ParsedXml&) = delete;

  XmlNode root() const { return XmlNode(document_.first_node()); }
  /// The number of the line, counted from 1, that holds `node`.
  std::size_t LineOf(XmlNode node) const { return lines_.LineOf(OffsetOf(node)); }

 private:
  void Parse();
  std::size_t OffsetOf(XmlNode node) const;

  std::string text_;
  LineIndex lines_;
  rapidxml::xml_document<> document_;
};

}  // namespace solution
