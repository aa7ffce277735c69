// The other files of a solution, as far as their exports are available.
#pragma once

#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "design/Design.h"

namespace solution {

/// Finds the elements of other files that one file refers to. An export does not say which table of another file an
/// occurrence shows; this is learned from references to the table's fields that give UUIDs.
class OtherFiles {
 public:
  /// The designs must outlive this object.
  OtherFiles(const Design& design, std::vector<const Design*> others);

  /// Null when no other file has it.
  const Element* Find(Kind kind, std::string_view uuid) const;
  const Element* FindField(std::string_view occurrence, std::string_view name) const;

 private:
  struct Table {
    const Design* design;
    const Element* table;
  };
  void Learn(XmlNode node);

  std::vector<const Design*> others_;
  std::unordered_map<std::string_view, Table> tables_;  // by the occurrence's name
};

}  // namespace solution
