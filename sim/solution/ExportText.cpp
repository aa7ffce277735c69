// Encodings and line numbers of exports.
#include "solution/ExportText.h"

#include <algorithm>
#include <bit>
#include <cstring>
#include <optional>

#include "calc/Unicode.h"

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

std::u16string ToNativeUnits(std::string_view bytes, std::endian order) {
  std::u16string units(bytes.size() / sizeof(char16_t), u'\0');
  std::memcpy(units.data(), bytes.data(), bytes.size());
  if (order != std::endian::native) {
    for (char16_t& unit : units) unit = static_cast<char16_t>(unit << 8 | unit >> 8);
  }
  if (units.front() == kByteOrderMark) units.erase(0, 1);
  return units;
}

// Where two texts begin to differ; npos when they do not.
template <typename Text>
std::size_t Difference(const Text& a, const Text& b) {
  if (a == b) return Text::npos;
  return static_cast<std::size_t>(std::mismatch(a.begin(), a.end(), b.begin(), b.end()).first - a.begin());
}

std::string InLine(std::string_view text, std::size_t offset) {
  return " in line " + std::to_string(LineIndex(text).LineOf(offset));
}

void DecodeUtf16(std::string& text, std::endian order, std::vector<std::string>& notes) {
  const std::u16string units = ToNativeUnits(text, order);
  text = calc::ToUtf8(units);
  const std::size_t half = Difference(units, calc::ToUtf16(text));
  if (half == units.npos) return;
  const std::size_t offset = calc::ToUtf8({units.data(), half}).size();
  notes.push_back("holds half a character" + InLine(text, offset) + ", which reads as U+FFFD here");
}

}  // namespace

bool DecodeExport(std::string& text, std::string& reason, std::vector<std::string>& notes) {
  if (text.starts_with(kUtf8Mark)) text.erase(0, kUtf8Mark.size());
  if (const auto order = Utf16Order(text)) {
    if (text.size() % sizeof(char16_t) != 0) {
      reason = "is cut off within a UTF-16 character";
      return false;
    }
    DecodeUtf16(text, *order, notes);
  } else if (const std::size_t bad = Difference(text, calc::ToUtf8(calc::ToUtf16(text))); bad != text.npos) {
    reason = "is not valid UTF-8" + InLine(text, bad);
    return false;
  }
  // The parser would take it for the end.
  if (const std::size_t zero = text.find('\0'); zero != text.npos) {
    reason = "holds a zero byte" + InLine(text, zero);
    return false;
  }
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
