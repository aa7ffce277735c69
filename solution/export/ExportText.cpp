// Encodings, line numbers and repair of exports.
#include "export/ExportText.h"

#include <unicode/ustring.h>

#include <algorithm>
#include <bit>
#include <cstring>
#include <optional>

#include "Utf8.h"

namespace solution {
namespace {

constexpr std::string_view kUtf8Mark = "\xEF\xBB\xBF";
constexpr char16_t kByteOrderMark = 0xFEFF;
constexpr UChar32 kReplacement = 0xFFFD;
constexpr std::size_t kLargestExport = std::size_t{1} << 30;

// An XML document starts with an ASCII character, so without a mark the place of its zero byte gives the byte order.
std::optional<std::endian> Utf16Order(std::string_view bytes) {
  if (bytes.size() < 2) return std::nullopt;
  const auto first = static_cast<unsigned char>(bytes[0]);
  const auto second = static_cast<unsigned char>(bytes[1]);
  if ((first == 0xFF && second == 0xFE) || (first != 0 && second == 0)) return std::endian::little;
  if ((first == 0xFE && second == 0xFF) || (first == 0 && second != 0)) return std::endian::big;
  return std::nullopt;
}

std::u16string ToUnits(std::string bytes, std::endian order) {
  std::u16string units(bytes.size() / sizeof(char16_t), u'\0');
  std::memcpy(units.data(), bytes.data(), units.size() * sizeof(char16_t));
  if (order != std::endian::native) {
    for (char16_t& unit : units) unit = static_cast<char16_t>(unit << 8 | unit >> 8);
  }
  if (!units.empty() && units.front() == kByteOrderMark) units.erase(0, 1);
  return units;
}

std::string ToUtf8(const std::u16string& units, std::vector<std::string>& notes) {
  UErrorCode status = U_ZERO_ERROR;
  std::int32_t length = 0;
  const auto size = static_cast<std::int32_t>(units.size());
  u_strToUTF8WithSub(nullptr, 0, &length, units.data(), size, kReplacement, nullptr, &status);
  std::string text(static_cast<std::size_t>(length), '\0');
  std::int32_t replaced = 0;
  status = U_ZERO_ERROR;
  u_strToUTF8WithSub(text.data(), length, nullptr, units.data(), size, kReplacement, &replaced, &status);
  if (replaced > 0) {
    notes.push_back("contains " + std::to_string(replaced) + " lone surrogate(s), shown as U+FFFD");
  }
  return text;
}

[[noreturn]] void Refuse(const char* reason, std::string_view text, std::size_t offset) {
  throw Refusal{reason + (" in line " + std::to_string(LineIndex(text).LineOf(offset)))};
}

// A line ending is never part of a longer character, so lines can be checked one by one.
std::size_t InvalidLine(std::string_view text) {
  std::size_t start = 0;
  for (auto end = text.find('\n'); end != text.npos; end = text.find('\n', start)) {
    if (!IsUtf8(text.substr(start, end - start))) break;
    start = end + 1;
  }
  return start;
}

void AppendEscaped(std::string& result, std::string_view section) {
  for (const char c : section) {
    switch (c) {
      case '<': result += "&lt;"; break;
      case '>': result += "&gt;"; break;
      case '&': result += "&amp;"; break;
      case '"': result += "&quot;"; break;
      default: result += c;
    }
  }
}

constexpr std::string_view kSectionStart = "<![CDATA[";
constexpr std::string_view kSectionEnd = "]]>";

// A section in element content follows a tag or white space; an escaped text ends in `;` or a letter.
bool MayBeBroken(std::string_view text) {
  for (auto at = text.find(kSectionStart); at != text.npos; at = text.find(kSectionStart, at + 1)) {
    if (at > 0 && text[at - 1] != '>') return true;
  }
  return false;
}

/// Copies a text while it follows where tags, attribute values and sections start and end.
class AttributeRepair {
 public:
  explicit AttributeRepair(std::string_view text) : rest_(text) { repaired_.reserve(text.size() + text.size() / 8); }

  std::string Run() {
    while (!rest_.empty()) {
      CopyTo(rest_.find('<'));
      if (rest_.starts_with(kSectionStart)) {
        CopyThrough(kSectionEnd);
      } else if (rest_.starts_with("<!--")) {
        CopyThrough("-->");
      } else {
        CopyTag();
      }
    }
    return std::move(repaired_);
  }

 private:
  void CopyTo(std::size_t end) {
    end = std::min(end, rest_.size());
    repaired_ += rest_.substr(0, end);
    rest_.remove_prefix(end);
  }
  void CopyThrough(std::string_view mark) {
    const auto end = rest_.find(mark);
    CopyTo(end == rest_.npos ? end : end + mark.size());
  }

  void CopyTag() {
    while (!rest_.empty() && rest_.front() != '>') {
      CopyTo(std::max<std::size_t>(1, rest_.find_first_of("\"'>", 1)));
      if (rest_.empty() || rest_.front() == '>') return;
      CopyValue(rest_.front());
    }
  }

  void CopyValue(char quote) {
    CopyTo(1);
    while (!rest_.empty() && rest_.front() != quote) {
      if (rest_.starts_with(kSectionStart)) {
        const auto end = rest_.find(kSectionEnd);
        const auto size = end == rest_.npos ? rest_.size() : end + kSectionEnd.size();
        AppendEscaped(repaired_, rest_.substr(0, size));
        rest_.remove_prefix(size);
      } else {
        const char stops[] = {quote, '<'};
        CopyTo(std::max<std::size_t>(1, rest_.find_first_of(std::string_view(stops, 2), rest_.front() == '<')));
      }
    }
    CopyTo(1);
  }

  std::string_view rest_;
  std::string repaired_;
};

}  // namespace

std::string DecodeExport(std::string bytes, std::vector<std::string>& notes) {
  if (bytes.size() > kLargestExport) throw Refusal{"is larger than 1 GB"};
  std::string text;
  if (const auto order = Utf16Order(bytes)) {
    const bool odd = bytes.size() % sizeof(char16_t) != 0;
    text = ToUtf8(ToUnits(std::move(bytes), *order), notes);
    if (odd) Refuse("is cut off within a UTF-16 character", text, text.size());
  } else {
    text = std::move(bytes);
    if (text.starts_with(kUtf8Mark)) text.erase(0, kUtf8Mark.size());
    if (!IsUtf8(text)) Refuse("is not valid UTF-8", text, InvalidLine(text));
  }
  // The parser would take it for the end.
  if (const std::size_t zero = text.find('\0'); zero != text.npos) Refuse("contains a zero byte", text, zero);
  return text;
}

void EscapeCdataInAttributes(std::string& text) {
  if (MayBeBroken(text)) text = AttributeRepair(text).Run();
}

LineIndex::LineIndex(std::string_view text) {
  // Carriage returns are data, except in the oldest format, which has no other line endings.
  const char lineEnd = text.find('\n') == text.npos ? '\r' : '\n';
  for (auto at = text.find(lineEnd); at != text.npos; at = text.find(lineEnd, at + 1)) ends_.push_back(at);
}

std::size_t LineIndex::LineOf(std::size_t offset) const {
  return 1 + static_cast<std::size_t>(std::lower_bound(ends_.begin(), ends_.end(), offset) - ends_.begin());
}

}  // namespace solution
