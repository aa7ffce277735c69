// The text of an element as the index of designs keeps it: its name and its properties.
#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "design/Design.h"

namespace service {

std::string StoredTextOf(const solution::Design& design, const solution::Element& element);

/// Calls `use` for the name ("name" for that of the element) and the value of each property.
void ForEachValue(std::string_view storedText,
                  const std::function<void(std::string_view name, std::string_view value)>& use);

/// A file's name as names are compared: without ".fmp12" and without regard to case.
std::string FoldedName(std::string_view fileName);

}  // namespace service
