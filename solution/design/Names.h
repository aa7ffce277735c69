// How FileMaker compares names.
#pragma once

#include <string>
#include <string_view>

namespace solution {

/// `name` (UTF-8) without regard to case: equal for names that FileMaker considers the same.
std::string FoldCase(std::string_view name);

/// A file's name without the ".fmp12" that may end it, in any case.
std::string_view WithoutExtension(std::string_view fileName);

}  // namespace solution
