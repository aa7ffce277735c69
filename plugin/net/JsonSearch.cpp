// Finds a string member and undoes its escapes.
#include <bit>
#include <cstddef>
#include <cstdint>

#include "net/ByteBlocks.h"
#include "net/Json.h"

namespace {

using blocks::kBlock;
using blocks::kPiece;
using blocks::kRunStep;

/// The first position from `from` up to `to` for which the cheap `test` and then `confirm` hold; `to` if there is none.
template <typename Test, typename Confirm>
std::size_t FindFirst(std::size_t from, std::size_t to, Test test, Confirm confirm) {
  for (; from + kBlock <= to; from += kBlock) {
    const auto blockTest = [=](std::size_t i) { return test(from + i); };
    if (!blocks::Any(blockTest)) continue;
    for (std::uint64_t mask = blocks::Mask(blockTest); mask != 0; mask &= mask - 1) {
      const std::size_t at = from + std::countr_zero(mask);
      if (confirm(at)) return at;
    }
  }
  while (from < to && !(test(from) && confirm(from))) ++from;
  return from;
}

/// The first position of `pattern`, which is a key in quotes, a colon and a quote; npos if there is none.
std::size_t FindPattern(std::string_view text, std::string_view pattern) {
  if (text.size() < pattern.size()) return text.npos;
  // A text may have many quotes and colons, but few of its keys end in the same byte.
  const char* const keyEnd = text.data() + pattern.size() - 4;
  const char last = pattern[pattern.size() - 4];
  const std::size_t end = text.size() - pattern.size() + 1;
  const std::size_t found = FindFirst(
      0, end, [=](std::size_t at) { return (keyEnd[at] == last) & (keyEnd[at + 2] == ':'); },
      [=](std::size_t at) { return text[at + 1] == pattern[1] && text.substr(at, pattern.size()) == pattern; });
  return found < end ? found : text.npos;
}

/// The position of the quote that closes the string opened just before `from`; the size of `json` if none does.
std::size_t FindClosingQuote(std::string_view json, std::size_t from) {
  const char* const text = json.data();
  return FindFirst(
      from, json.size(),
      [=](std::size_t at) { return (text[at] == '"') & ((text[at - 1] != '\\') | (text[at - 2] == '\\')); },
      [=](std::size_t at) { return (at - json.find_last_not_of('\\', at - 1)) % 2 == 1; });
}

constexpr char Unescaped(char byte) {
  switch (byte) {
    case 'n':
      return '\n';
    case 'r':
      return '\r';
    case 't':
      return '\t';
    default:
      return byte;
  }
}

/// Writes a block to `out` with its escapes undone, and advances `out`. Returns how many bytes were read: one more than
/// a block if its last byte starts an escape.
std::size_t UnescapeBlock(const char* block, char*& out) {
  std::size_t done = 0;
  std::uint64_t mask = blocks::Mask([block](std::size_t i) { return block[i] == '\\'; });
  while (mask != 0) {
    const std::size_t at = std::countr_zero(mask);
    out = blocks::CopyRun<kRunStep>(block + done, at - done, out);
    *out++ = Unescaped(block[at + 1]);
    done = at + 2;
    mask &= ~(std::uint64_t{3} << at);  // an escaped backslash escapes nothing
  }
  if (done >= kBlock) return done;
  out = blocks::CopyRun<kRunStep>(block + done, kBlock - done, out);
  return kBlock;
}

void AppendUnescaped(std::string_view text, std::string& result) {
  char piece[kPiece + kBlock + kRunStep];
  char* out = piece;
  while (text.size() >= kBlock + kRunStep) {
    text.remove_prefix(UnescapeBlock(text.data(), out));
    if (out < piece + kPiece) continue;
    result.append(piece, out - piece);
    out = piece;
  }
  result.append(piece, out - piece);
  for (std::size_t i = 0; i < text.size(); ++i) {
    const bool escape = text[i] == '\\' && i + 1 < text.size();
    result += escape ? Unescaped(text[++i]) : text[i];
  }
}

}  // namespace

std::string JsonGetString(std::string_view json, std::string_view key) {
  const std::string pattern = '"' + std::string(key) + "\":\"";
  const std::size_t found = FindPattern(json, pattern);
  if (found == json.npos) return "";
  const std::size_t start = found + pattern.size();
  const std::string_view value = json.substr(start, FindClosingQuote(json, start) - start);
  if (value.find('\\') == value.npos) return std::string(value);
  std::string result;
  result.reserve(value.size());
  AppendUnescaped(value, result);
  return result;
}
