// Turns XML names and numbers into plain English.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace solution {

/// "CreationTimestamp" as "creation timestamp", "SMTPPort" as "SMTP port", "Looked_up" as "looked up".
std::string Words(std::string_view name);

/// The same with a capital first letter.
std::string Label(std::string_view name);

/// "1 step", "12 steps".
std::string Counted(std::size_t count, std::string_view noun);

/// In FileMaker's quotation marks: “Import”.
std::string Quoted(std::string_view name);

/// Appends `part`, unless it is empty, after `separator` if there is text before it.
void Append(std::string& text, std::string_view part, std::string_view separator = ", ");

/// Shortens `text` to at most `most` bytes, at the end of a character, and appends "…".
void Cut(std::string& text, std::size_t most);

}  // namespace solution
