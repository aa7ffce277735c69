// Encodings, line numbers and repair of exports.
#include "export/ExportText.h"

#include <algorithm>
#include <bit>
#include <cstring>
#include <optional>

#include "Utf8.h"

namespace solution {
namespace {

constexpr std::string_view kUtf8Mark = "\xEF\xBB\xBF";
constexpr char16_t kByteOrderMark = 0xFEFF;
constexpr char32_t kReplacement = 0xFFFD;
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

char16_t UnitAt(const char* bytes, std::endian order) {
  char16_t unit;
  std::memcpy(&unit, bytes, sizeof unit);
  return order == std::endian::native ? unit : static_cast<char16_t>(unit << 8 | unit >> 8);
}

bool IsLead(char32_t unit) { return unit >= 0xD800 && unit < 0xDC00; }
bool IsTrail(char32_t unit) { return unit >= 0xDC00 && unit < 0xE000; }

/// Calls `take` with each character of UTF-16 text; returns how many lone surrogates it passed as U+FFFD.
template <typename Take>
std::size_t ForEachCharacter(std::string_view bytes, std::endian order, Take take) {
  std::size_t lone = 0;
  std::size_t at = UnitAt(bytes.data(), order) == kByteOrderMark ? sizeof(char16_t) : 0;
  for (; at + 1 < bytes.size(); at += sizeof(char16_t)) {
    char32_t character = UnitAt(bytes.data() + at, order);
    if (IsLead(character) || IsTrail(character)) {
      const char32_t next = at + 3 < bytes.size() ? UnitAt(bytes.data() + at + sizeof(char16_t), order) : 0;
      if (IsLead(character) && IsTrail(next)) {
        character = 0x10000 + ((character - 0xD800) << 10) + (next - 0xDC00);
        at += sizeof(char16_t);
      } else {
        character = kReplacement;
        ++lone;
      }
    }
    take(character);
  }
  return lone;
}

int ContinuationBytes(char32_t character) {
  return character < 0x80 ? 0 : character < 0x800 ? 1 : character < 0x10000 ? 2 : 3;
}

std::string ToUtf8(std::string_view bytes, std::endian order, std::vector<std::string>& notes) {
  // The exact length first: touching unneeded memory costs more than reading the text twice.
  std::size_t length = 0;
  ForEachCharacter(bytes, order, [&length](char32_t character) {
    length += 1 + static_cast<std::size_t>(ContinuationBytes(character));
  });
  std::string text(length, '\0');
  char* out = text.data();
  const std::size_t lone = ForEachCharacter(bytes, order, [&out](char32_t character) {
    constexpr int kLeadMarks[] = {0, 0xC0, 0xE0, 0xF0};
    const int more = ContinuationBytes(character);
    *out++ = static_cast<char>(static_cast<char32_t>(kLeadMarks[more]) | character >> 6 * more);
    for (int i = more - 1; i >= 0; --i) *out++ = static_cast<char>(0x80 | (character >> 6 * i & 0x3F));
  });
  if (lone > 0) notes.push_back("contains " + std::to_string(lone) + " lone surrogate(s), shown as U+FFFD");
  return text;
}

[[noreturn]] void Refuse(const char* reason, std::string_view text, std::size_t offset) {
  throw Refusal{reason + (" in line " + std::to_string(LineIndex(text).LineOf(offset)))};
}

// A line ending is never part of a longer character, so lines can be checked one by one.
std::size_t InvalidLine(std::string_view text) {
  std::size_t start = 0;
  for (auto end = text.find('\n'); end != std::string_view::npos; end = text.find('\n', start)) {
    if (!IsUtf8(text.substr(start, end - start))) break;
    start = end + 1;
  }
  return start;
}

void AppendEscaped(std::string& result, std::string_view section) {
  for (const char c : section) {
    switch (c) {
      case '<':
        result += "&lt;";
        break;
      case '>':
        result += "&gt;";
        break;
      case '&':
        result += "&amp;";
        break;
      case '"':
        result += "&quot;";
        break;
      default:
        result += c;
    }
  }
}

constexpr std::string_view kSectionStart = "<![CDATA[";
constexpr std::string_view kSectionEnd = "]]>";

// A section in element content follows a tag or white space; an escaped text ends in `;` or a letter.
bool MayBeBroken(std::string_view text) {
  for (auto at = text.find(kSectionStart); at != std::string_view::npos; at = text.find(kSectionStart, at + 1)) {
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

  std::size_t escaped() const { return escaped_; }

 private:
  void CopyTo(std::size_t end) {
    end = std::min(end, rest_.size());
    repaired_ += rest_.substr(0, end);
    rest_.remove_prefix(end);
  }
  void CopyThrough(std::string_view mark) {
    const auto end = rest_.find(mark);
    CopyTo(end == std::string_view::npos ? end : end + mark.size());
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
        const auto size = end == std::string_view::npos ? rest_.size() : end + kSectionEnd.size();
        AppendEscaped(repaired_, rest_.substr(0, size));
        rest_.remove_prefix(size);
        ++escaped_;
      } else {
        const char stops[] = {quote, '<'};
        CopyTo(std::max<std::size_t>(1, rest_.find_first_of(std::string_view(stops, 2), rest_.front() == '<')));
      }
    }
    CopyTo(1);
  }

  std::string_view rest_;
  std::string repaired_;
  std::size_t escaped_ = 0;
};

}  // namespace

std::string DecodeExport(std::string bytes, std::vector<std::string>& notes) {
  if (bytes.size() > kLargestExport) throw Refusal{"is larger than 1 GB"};
  std::string text;
  if (const auto order = Utf16Order(bytes)) {
    const bool odd = bytes.size() % sizeof(char16_t) != 0;
    text = ToUtf8(bytes, *order, notes);
    if (odd) Refuse("is cut off within a UTF-16 character", text, text.size());
  } else {
    text = std::move(bytes);
    if (text.starts_with(kUtf8Mark)) text.erase(0, kUtf8Mark.size());
    if (!IsUtf8(text)) Refuse("is not valid UTF-8", text, InvalidLine(text));
  }
  // The parser would treat it as the end of the text.
  if (const std::size_t zero = text.find('\0'); zero != std::string_view::npos)
    Refuse("contains a zero byte", text, zero);
  return text;
}

std::size_t EscapeCdataInAttributes(std::string& text) {
  if (!MayBeBroken(text)) return 0;
  AttributeRepair repair(text);
  text = repair.Run();
  return repair.escaped();
}

LineIndex::LineIndex(std::string_view text) {
  // Carriage returns are data, except in the oldest format, which has no other line endings.
  const char lineEnd = text.find('\n') == std::string_view::npos ? '\r' : '\n';
  for (auto at = text.find(lineEnd); at != std::string_view::npos; at = text.find(lineEnd, at + 1)) ends_.push_back(at);
}

std::size_t LineIndex::LineOf(std::size_t offset) const {
  return 1 + static_cast<std::size_t>(std::lower_bound(ends_.begin(), ends_.end(), offset) - ends_.begin());
}

}  // namespace solution
