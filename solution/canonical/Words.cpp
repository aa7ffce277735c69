#include "canonical/Words.h"

namespace solution {
namespace {

bool IsUpper(char c) { return c >= 'A' && c <= 'Z'; }
bool IsLower(char c) { return c >= 'a' && c <= 'z'; }

}  // namespace

std::string Words(std::string_view name) {
  std::string words;
  for (std::size_t i = 0; i < name.size(); ++i) {
    const char previous = i == 0 ? ' ' : name[i - 1], c = name[i], next = i + 1 < name.size() ? name[i + 1] : ' ';
    const bool beginsWord = IsUpper(c) && (IsLower(next) || !IsUpper(previous));
    if (beginsWord && i > 0 && previous != '_') words += ' ';
    words += c == '_' ? ' ' : beginsWord && !IsUpper(next) ? static_cast<char>(c - 'A' + 'a') : c;
  }
  return words;
}

std::string Label(std::string_view name) {
  std::string label = Words(name);
  if (!label.empty() && IsLower(label.front())) label.front() = static_cast<char>(label.front() - 'a' + 'A');
  return label;
}

std::string Counted(std::size_t count, std::string_view noun) {
  return std::to_string(count) + ' ' + std::string(noun) + (count == 1 ? "" : "s");
}

std::string Quoted(std::string_view name) { return "\u201C" + std::string(name) + "\u201D"; }

void Append(std::string& text, std::string_view part, std::string_view separator) {
  if (part.empty()) return;
  if (!text.empty()) text += separator;
  text += part;
}

void Cut(std::string& text, std::size_t most) {
  if (text.size() <= most) return;
  while (most > 0 && (static_cast<unsigned char>(text[most]) & 0xC0) == 0x80) --most;
  text.resize(most);
  text += "\u2026";
}

}  // namespace solution
