// Fields and formulas within the text of a layout.
#pragma once

#include <string_view>
#include <vector>

namespace solution {

/// The names and formulas in `text` that FileMaker replaces by values: `<<Name>>`, `<<Orders::Status>>`, and
/// `<<\u0192:Price * 2>>` without its mark. The results point into `text`.
std::vector<std::string_view> MergeFormulas(std::string_view text);

}  // namespace solution
