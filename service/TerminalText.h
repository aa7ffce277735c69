// Text of the other side, as it may be shown on a terminal.
#pragma once

#include <string>
#include <string_view>

namespace service {

/// `text` with its control characters visible, as \x1B, apart from tabs and line endings: a terminal would carry out
/// what they begin.
std::string TextForTerminal(std::string_view text);

/// The same with line endings and tabs as spaces.
std::string LineForTerminal(std::string_view text);

}  // namespace service
