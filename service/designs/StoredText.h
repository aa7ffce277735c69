// The text of an element as the index of designs stores it: its name and its properties.
#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "design/Design.h"

namespace service {

std::string StoredTextOf(const solution::Design& design, const solution::Element& element);

/// Calls `use` with the name and value of each property; the element's own name has the name "name".
void ForEachValue(std::string_view storedText,
                  const std::function<void(std::string_view name, std::string_view value)>& use);

/// A file's name in the form for comparing: without ".fmp12", folded.
std::string FoldedName(std::string_view fileName);

}  // namespace service
