// Encodings and line numbers of exports.
#include "sim/solution/ExportText.h"

#include <algorithm>
#include <bit>
#include <cstring>
#include <optional>

#include "sim/calc/Unicode.h"

namespace sim {
namespace {

constexpr std::string_view kUtf8Mark = "\xEF\xBB\xBF";
constexpr char16_t kByteOrderMark = 0xFEFF;

// An XML document starts with an ASCII character, so without a mark a zero byte tells the order.
std::optional<std::endian> Utf16Order(std::string_view bytes) {
  if (bytes.size() < 2) return std::nullopt;
  const auto first = static_cast<unsigned char>(bytes[0]);
  const auto second = static_cast<unsigned char>(bytes[1]);
  if ((first == 0xFF && second == 0xFE) || (first != 0 && second == 0)) return std::endian::little;
  if ((first == 0xFE && second == 0xFF) || (first == 0 && second != 0)) return std::endian::big;
  return std::nullopt;
}

}  // namespace

bool DecodeExport(std::string& text, std::string& reason) {
  if (text.starts_with(kUtf8Mark)) text.erase(0, kUtf8Mark.size());
  const auto order = Utf16Order(text);
  if (!order) return true;
  if (text.size() % sizeof(char16_t) != 0) {
    reason = "is cut off within a UTF-16 character";
    return false;
  }
  std::u16string units(text.size() / sizeof(char16_t), u'\0');
  std::memcpy(units.data(), text.data(), text.size());
  text = std::string();  // frees it: exports are large
  if (*order != std::endian::native) {
    for (char16_t& unit : units) unit = static_cast<char16_t>(unit << 8 | unit >> 8);
  }
  std::u16string_view content = units;
  if (content.front() == kByteOrderMark) content.remove_prefix(1);
  text = calc::ToUtf8(content);
  return true;
}

LineIndex::LineIndex(std::string_view text) {
  // Carriage returns are data, except in the oldest exports, which have no other line ends.
  const char lineEnd = text.find('\n') == text.npos ? '\r' : '\n';
  for (auto at = text.find(lineEnd); at != text.npos; at = text.find(lineEnd, at + 1)) ends_.push_back(at);
}

std::size_t LineIndex::LineOf(std::size_t offset) const {
  return 1 + static_cast<std::size_t>(std::lower_bound(ends_.begin(), ends_.end(), offset) - ends_.begin());
}

}  // namespace sim
