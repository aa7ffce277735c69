// Indentation of texts that have several lines.
#pragma once

#include <cstddef>
#include <string>

namespace solution {

inline constexpr std::size_t kIndent = 4;  ///< columns

/// `text` with every line but the first moved right by `columns`.
std::string Indented(const std::string& text, std::size_t columns);

}  // namespace solution
