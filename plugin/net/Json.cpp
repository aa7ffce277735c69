// The routines work in blocks of 64 bytes: plain loops over a block, which compilers turn into vector instructions,
// find the few bytes that matter, and the runs between those are copied whole. What is written is gathered on the stack
// and appended piece by piece: giving the result its size first would fill it with zeros.
#include "net/Json.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

namespace {

using Byte = unsigned char;

constexpr std::size_t kBlock = 64;            // one bit of a mask for each byte
constexpr std::size_t kRow = kBlock / 4;      // loops over a block take its four rows together
constexpr std::size_t kPiece = 16 * kBlock;   // read before what came of it is appended to the result
constexpr std::size_t kRunStep = kRow;        // between the escapes of XML most runs are shorter
constexpr std::size_t kLineStep = 24;         // between the ends of lines they are longer
constexpr std::size_t kLargeText = 64 << 10;  // where spare memory begins to matter
constexpr std::size_t kSlack = kLineStep;     // the most that is read or written behind a run

// The words below have the byte that comes first in memory as their lowest.
static_assert(std::endian::native == std::endian::little);

std::uint64_t LoadWord(const Byte* bytes) {
  std::uint64_t word;
  std::memcpy(&word, bytes, sizeof word);
  return word;
}

/// The mask of those positions of a block for which `test` holds.
template <typename Test>
std::uint64_t BlockMask(Test test) {
  Byte flags[kBlock];
  for (std::size_t i = 0; i < kRow; ++i) {
    flags[i] = test(i);
    flags[i + kRow] = test(i + kRow);
    flags[i + 2 * kRow] = test(i + 2 * kRow);
    flags[i + 3 * kRow] = test(i + 3 * kRow);
  }
  // The product moves the lowest bits of eight bytes to the word's highest byte. As a loop this would be unrolled too
  // early by g++, which then would not vectorise the loop above.
  const auto bits = [&flags](std::size_t at) { return LoadWord(flags + at) * 0x0102040810204080u >> 56; };
  return bits(0) | bits(8) << 8 | bits(16) << 16 | bits(24) << 24 | bits(32) << 32 | bits(40) << 40 | bits(48) << 48 |
         bits(56) << 56;
}

/// The sums of `count`, at most 63, over the rows of a block: one for each column, in the bytes of two words.
template <typename Count>
std::array<std::uint64_t, 2> ColumnSums(Count count) {
  Byte sums[kRow];
  for (std::size_t i = 0; i < kRow; ++i) {
    sums[i] = static_cast<Byte>(count(i) + count(i + kRow) + count(i + 2 * kRow) + count(i + 3 * kRow));
  }
  return {LoadWord(sums), LoadWord(sums + 8)};
}

/// Whether `test` holds for any position of a block, at a fraction of the mask's cost.
template <typename Test>
bool AnyInBlock(Test test) {
  const auto [low, high] = ColumnSums(test);
  return (low | high) != 0;
}

/// The sum of `count`, at most 63, over the positions of a block.
template <typename Count>
std::size_t SumOverBlock(Count count) {
  constexpr std::uint64_t kEvenBytes = 0x00ff00ff00ff00ff;
  std::uint64_t sums = 0;
  for (const std::uint64_t word : ColumnSums(count)) sums += (word & kEvenBytes) + (word >> 8 & kEvenBytes);
  return sums * 0x0001000100010001u >> 48;
}

/// Copies `size` bytes in steps of kStep, which reads and writes up to kStep bytes more; returns the end of the copy.
template <std::size_t kStep>
char* CopyRun(const char* from, std::size_t size, char* to) {
  std::memcpy(to, from, kStep);
  for (std::size_t done = kStep; done < size; done += kStep) std::memcpy(to + done, from + done, kStep);
  return to + size;
}

/// What is written for one byte.
struct Escape {
  char text[6];
  Byte size;
  Byte separator;  // `size` if it separates two strings: in a row of separators only the first is written
};
using EscapeTable = std::array<Escape, 256>;

constexpr EscapeTable MakeEscapes() {
  constexpr char kHex[] = "0123456789abcdef";
  EscapeTable table{};
  for (int byte = 0; byte < 256; ++byte) table[byte] = {{static_cast<char>(byte)}, 1, 0};
  for (int byte = 0; byte < ' '; ++byte) table[byte] = {{'\\', 'u', '0', '0', kHex[byte / 16], kHex[byte % 16]}, 6, 0};
  table['\t'] = {{'\\', 't'}, 2, 0};
  table['\n'] = {{'\\', 'n'}, 2, 0};
  table['\r'] = {{'\\', 'r'}, 2, 0};
  table['"'] = {{'\\', '"'}, 2, 0};
  table['\\'] = {{'\\', '\\'}, 2, 0};
  return table;
}

constexpr EscapeTable MakeLineEscapes() {
  EscapeTable table = MakeEscapes();
  table['\n'] = table['\r'] = {{'"', ',', '"'}, 3, 3};
  return table;
}

constexpr EscapeTable kEscapes = MakeEscapes();
constexpr EscapeTable kLineEscapes = MakeLineEscapes();

template <const EscapeTable& kTable>
constexpr bool kSeparates = kTable['\n'].separator != 0;

constexpr std::size_t kLongestEscape = sizeof Escape::text;

constexpr bool IsEscaped(Byte byte) { return (byte < ' ') | (byte == '"') | (byte == '\\'); }

/// How much longer escaping makes `text`; a separator counts even where it is not written.
template <const EscapeTable& kTable>
std::size_t Growth(std::string_view text) {
  std::size_t growth = 0;
  for (; text.size() >= kBlock; text.remove_prefix(kBlock)) {
    growth += SumOverBlock([block = text.data()](std::size_t i) -> Byte {
      const Byte byte = block[i];
      const bool line_end = (byte == '\n') | (byte == '\r');
      return (byte < ' ') * 5 - (line_end | (byte == '\t')) * 4 + ((byte == '"') | (byte == '\\')) +
             line_end * kSeparates<kTable>;
    });
  }
  for (const Byte byte : text) growth += kTable[byte].size - 1;
  return growth;
}

/// How much longer escaping is likely to make `text`, which is not empty: judged by blocks from all over it and rounded
/// up.
template <const EscapeTable& kTable>
std::size_t LikelyGrowth(std::string_view text) {
  const std::size_t distance = std::max(text.size() / 257, 19 * kBlock);  // odd numbers: no text repeats in their step
  std::size_t growth = 0, seen = 0;
  for (std::size_t at = 0; at < text.size(); at += distance) {
    const std::string_view block = text.substr(at, kBlock);
    growth += Growth<kTable>(block);
    seen += block.size();
  }
  const std::size_t likely = growth * text.size() / seen;
  return std::min(likely + likely / 2 + text.size() / 64, text.size() * (kLongestEscape - 1));
}

/// Makes room for `size` more bytes. A large text grows by an eighth at a time, not to twice its size as its own
/// reserve() makes it.
void MakeRoom(std::string& text, std::size_t size) {
  if (text.capacity() - text.size() >= size) return;
  if (text.size() < kLargeText) return text.reserve(text.size() + std::max(size, text.size()));
  std::string roomier;
  roomier.reserve(text.size() + std::max(size, text.size() / 8));
  roomier += text;
  text.swap(roomier);
}

/// Writes a block escaped to `out` and returns the end. `mask` has the bytes to escape, `previous` is the `separator`
/// of the byte before the block.
template <const EscapeTable& kTable>
char* EscapeBlock(const char* block, std::uint64_t mask, Byte previous, char* out) {
  constexpr std::size_t kStep = kSeparates<kTable> ? kLineStep : kRunStep;
  std::size_t done = 0;
  for (; mask != 0; mask &= mask - 1) {
    const std::size_t at = std::countr_zero(mask);
    if (at != done) out = CopyRun<kStep>(block + done, at - done, out);
    const Escape& escape = kTable[static_cast<Byte>(block[at])];
    std::memcpy(out, &escape, sizeof escape);
    out += escape.size;
    if (kSeparates<kTable>) {
      out -= at == done ? previous & escape.separator : 0;
      previous = escape.separator;
    }
    done = at + 1;
  }
  return CopyRun<kStep>(block + done, kBlock - done, out);
}

/// EscapeBlock for `size` bytes, at most kPiece, of whole blocks.
template <const EscapeTable& kTable>
char* EscapeBlocks(const char* text, std::size_t size, Byte& previous, char* out) {
  std::size_t plain = 0;
  while (plain < size && !AnyInBlock([block = text + plain](std::size_t i) { return IsEscaped(block[i]); })) {
    plain += kBlock;
  }
  std::memcpy(out, text, plain);
  out += plain;
  if (plain > 0) previous = 0;
  // All masks come first. Computed block by block, each would be waited for whenever the processor had guessed the
  // number of escapes in the block before wrongly.
  std::uint64_t masks[kPiece / kBlock];
  for (std::size_t at = plain; at < size; at += kBlock) {
    masks[at / kBlock] = BlockMask([block = text + at](std::size_t i) { return IsEscaped(block[i]); });
  }
  for (std::size_t at = plain; at < size; at += kBlock) {
    out = EscapeBlock<kTable>(text + at, masks[at / kBlock], previous, out);
    previous = kTable[static_cast<Byte>(text[at + kBlock - 1])].separator;
  }
  return out;
}

template <const EscapeTable& kTable>
void AppendEscaped(std::string_view text, std::string& result) {
  char piece[kLongestEscape * kPiece + kSlack];
  const auto append = [&](const char* end) {
    const std::size_t size = end - piece;
    if (result.capacity() - result.size() < size) MakeRoom(result, size + text.size() + Growth<kTable>(text));
    result.append(piece, size);
  };
  Byte previous = 0;
  while (text.size() >= kBlock + kSlack) {
    const char* const from = text.data();
    const std::size_t size = std::min(kPiece, (text.size() - kSlack) / kBlock * kBlock);
    text.remove_prefix(size);
    append(EscapeBlocks<kTable>(from, size, previous, piece));
  }
  // What is left is padded to whole blocks. The padding comes through as it is and is left off.
  char rest[2 * kBlock + kSlack];
  std::memset(rest, ' ', sizeof rest);
  const std::size_t size = text.copy(rest, text.size());
  const std::size_t padded = (size + kBlock - 1) / kBlock * kBlock;
  text = {};
  append(EscapeBlocks<kTable>(rest, padded, previous, piece) - (padded - size));
}

/// The first position from `from` to `to` for which `test`, a cheap one, and `confirm` hold; `to` if there is none.
template <typename Test, typename Confirm>
std::size_t FindFirst(std::size_t from, std::size_t to, Test test, Confirm confirm) {
  for (; from + kBlock <= to; from += kBlock) {
    const auto block_test = [=](std::size_t i) { return test(from + i); };
    if (!AnyInBlock(block_test)) continue;
    for (std::uint64_t mask = BlockMask(block_test); mask != 0; mask &= mask - 1) {
      const std::size_t at = from + std::countr_zero(mask);
      if (confirm(at)) return at;
    }
  }
  while (from < to && !(test(from) && confirm(from))) ++from;
  return from;
}

/// The first position of `pattern`, a key with its quotes, a colon and a quote; npos if there is none.
std::size_t FindPattern(std::string_view text, std::string_view pattern) {
  if (text.size() < pattern.size()) return text.npos;
  // However many quotes and colons a text has, few of its keys end in the same byte.
  const char* const key_end = text.data() + pattern.size() - 4;
  const char last = pattern[pattern.size() - 4];
  const std::size_t end = text.size() - pattern.size() + 1;
  const std::size_t found = FindFirst(
      0, end, [=](std::size_t at) { return (key_end[at] == last) & (key_end[at + 2] == ':'); },
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

/// Writes a block without its escapes to `out` and moves that to the end. Returns what was read: one byte more than a
/// block if an escape starts at its last.
std::size_t UnescapeBlock(const char* block, char*& out) {
  std::size_t done = 0;
  std::uint64_t mask = BlockMask([block](std::size_t i) { return block[i] == '\\'; });
  while (mask != 0) {
    const std::size_t at = std::countr_zero(mask);
    out = CopyRun<kRunStep>(block + done, at - done, out);
    *out++ = Unescaped(block[at + 1]);
    done = at + 2;
    mask &= ~(std::uint64_t{3} << at);  // an escaped backslash escapes nothing
  }
  if (done >= kBlock) return done;
  out = CopyRun<kRunStep>(block + done, kBlock - done, out);
  return kBlock;
}

void AppendUnescaped(std::string_view text, std::string& result) {
  char piece[kPiece + kBlock + kSlack];
  char* out = piece;
  while (text.size() >= kBlock + kSlack) {
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

std::string JsonEscape(std::string_view text) {
  std::string result;
  if (text.size() > kBlock) result.reserve(text.size() + LikelyGrowth<kEscapes>(text));
  AppendEscaped<kEscapes>(text, result);
  return result;
}

void JsonAppendEscaped(std::string_view text, std::string& result) {
  if (text.size() > kBlock) MakeRoom(result, text.size() + LikelyGrowth<kEscapes>(text));
  AppendEscaped<kEscapes>(text, result);
}

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

std::string NlToJsonArray(std::string_view text) {
  std::string result;
  JsonAppendLines(text, result);
  return result;
}

void JsonAppendLines(std::string_view text, std::string& result) {
  constexpr std::string_view kLineEnds = "\r\n";
  const std::size_t first = text.find_first_not_of(kLineEnds);
  if (first == text.npos) {
    result += "[]";
    return;
  }
  const std::string_view lines = text.substr(first, text.find_last_not_of(kLineEnds) + 1 - first);
  MakeRoom(result, lines.size() + LikelyGrowth<kLineEscapes>(lines) + 4);  // [" and "]
  result += "[\"";
  AppendEscaped<kLineEscapes>(lines, result);
  result += "\"]";
}
