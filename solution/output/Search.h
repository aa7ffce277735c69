// Finds text in a design.
#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "design/Design.h"

namespace solution {

struct SearchHit {
  const Element* element = nullptr;
  std::string property;  ///< "name", or as in Property
  std::size_t line = 0;  ///< of the property's value, counted from 1
  std::string text;      ///< that line
};

/// Calls `found` for every line of a name, formula, step or other property that contains `text`, without regard to
/// case.
void Search(const Design& design, std::string_view text, const std::function<void(const SearchHit&)>& found);

/// Calls `found` for every line of `value` that contains `folded`, a text that FoldCase has returned. Lines count
/// from 1.
void SearchLines(std::string_view value, const std::string& folded,
                 const std::function<void(std::size_t line, std::string_view text)>& found);

}  // namespace solution
