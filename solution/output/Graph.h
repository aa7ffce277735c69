// The relationships graph as FileMaker draws it.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "design/Design.h"

namespace solution {

/// One condition of a relationship: "Orders::ID" "=" "Lines::OrderID".
struct Predicate {
  std::string left, sign, right;
};

std::vector<Predicate> PredicatesOf(const Design& design, const Element& relationship);

/// The key of the table occurrence on a side, "LeftTable" or "RightTable"; empty when the export does not have it.
std::string SideOf(const Design& design, const Element& relationship, const char* side);

/// A rectangle in points, y downwards; all 0 where the export has none.
struct Box {
  std::int64_t x = 0, y = 0, width = 0, height = 0;
  std::string color;  ///< "#rrggbb", or empty
};

Box BoxOf(const Element& occurrence);

/// The table that an occurrence shows, and the data source when that is in another file.
struct Source {
  std::string table;
  std::string file;  ///< "another file" when the export does not say in which
};

Source SourceOf(const Element& occurrence);

/// True when only the name of an occurrence is shown.
bool IsCollapsed(const Element& occurrence);

struct Note {
  std::string text;
  Box box;
};

std::vector<Note> NotesOf(const Design& design);

}  // namespace solution
