// One opened export: its XML tree and what its root says.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "export/ExportText.h"
#include "export/XmlTree.h"

namespace solution {

/// Thrown for XML that no version of FileMaker writes. Never leaves ReadDesign.
struct Damage {
  XmlNode where;
  std::string reason;
};

/// The tree points into the text, so a document is neither copied nor moved.
class Document {
 public:
  /// `bytes` of an export in any encoding that exports come in. Throws Refusal.
  explicit Document(std::string bytes);
  Document(const Document&) = delete;
  Document& operator=(const Document&) = delete;

  XmlNode root() const { return XmlNode(document_.first_node()); }
  /// An attribute of the root: version, Source, File, UUID, locale ...
  std::string_view Attribute(const char* name) const { return root().attribute(name).value(); }
  /// Structure/AddAction, which holds the catalogs, or another part of the export; empty when there is none.
  XmlNode Part(const char* part, const char* action = "AddAction") const { return root().child(part).child(action); }

  /// Damage as a reason that names its line.
  Refusal Explain(const Damage& damage) const;

  std::vector<std::string> notes;  ///< what was not read exactly as written, a line each

 private:
  void Parse();
  std::size_t OffsetOf(XmlNode node) const;
  void CheckRoot() const;

  std::string text_;
  LineIndex lines_;
  rapidxml::xml_document<> document_;
};

/// The bytes of the file at `path` (UTF-8). Throws Refusal.
std::string ReadFile(const std::string& path);

}  // namespace solution
