// One opened export: its XML tree and the attributes of its root.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "export/ParsedXml.h"
#include "export/XmlTree.h"

namespace solution {

/// Thrown for XML that no version of FileMaker writes. Never leaves ReadDesign.
struct Damage {
  XmlNode where;
  std::string reason;
};

class Document {
 public:
  /// `bytes` of an export in any encoding that exports have. Throws Refusal.
  explicit Document(std::string bytes);

  XmlNode root() const { return xml_.root(); }
  /// An attribute of the root: version, Source, File, UUID, locale ...
  std::string_view Attribute(const char* name) const { return root().attribute(name).value(); }
  /// Structure/AddAction, which holds the catalogs, or another part of the export; empty when there is none.
  XmlNode Part(const char* part, const char* action = "AddAction") const { return root().child(part).child(action); }

  /// The reason of `damage`, with its line.
  Refusal Explain(const Damage& damage) const;

  std::vector<std::string> notes;  ///< what was not read exactly as written, one line each

 private:
  void CheckRoot() const;

  ParsedXml xml_;
};

/// The bytes of the file at `path` (UTF-8). Throws Refusal.
std::string ReadFile(const std::string& path);

}  // namespace solution
