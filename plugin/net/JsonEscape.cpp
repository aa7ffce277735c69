// Escaping. The few bytes that need it are found block by block, and the runs between them are copied whole. The output
// is collected on the stack and appended piece by piece: resizing the result first would fill it with zeros.
#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>

#include "net/ByteBlocks.h"
#include "net/Json.h"

namespace {

using blocks::Byte;
using blocks::kBlock;
using blocks::kPiece;
using blocks::kRunStep;

constexpr std::size_t kLineStep = 24;         // between line endings they are longer
constexpr std::size_t kSlack = kLineStep;     // the most that is read or written after a run
constexpr std::size_t kLargeText = 64 << 10;  // where spare memory begins to matter

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
    growth += blocks::Sum([block = text.data()](std::size_t i) -> Byte {
      const Byte byte = block[i];
      const bool endsLine = (byte == '\n') | (byte == '\r');
      const bool hasShortForm = endsLine | (byte == '\t');  // 1 longer, where \u00xx is 5 longer
      return (byte < ' ') * 5 - hasShortForm * 4 + ((byte == '"') | (byte == '\\')) + endsLine * kSeparates<kTable>;
    });
  }
  for (const Byte byte : text) growth += kTable[byte].size - 1;
  return growth;
}

/// How much longer escaping is likely to make `text`, which must not be empty: an estimate from samples, rounded up.
template <const EscapeTable& kTable>
std::size_t LikelyGrowth(std::string_view text) {
  // Odd numbers, so that in a regular text the samples do not all come from the same place in its pattern.
  const std::size_t distance = std::max(text.size() / 257, 19 * kBlock);
  std::size_t growth = 0, seen = 0;
  for (std::size_t at = 0; at < text.size(); at += distance) {
    const std::string_view block = text.substr(at, kBlock);
    growth += Growth<kTable>(block);
    seen += block.size();
  }
  const std::size_t likely = growth * text.size() / seen;
  return std::min(likely + likely / 2 + text.size() / 64, text.size() * (kLongestEscape - 1));
}

/// Makes room for `size` more bytes. A large text grows by an eighth at a time; std::string itself would double it.
void MakeRoom(std::string& text, std::size_t size) {
  if (text.capacity() - text.size() >= size) return;
  if (text.size() < kLargeText) return text.reserve(text.size() + std::max(size, text.size()));
  std::string roomier;
  roomier.reserve(text.size() + std::max(size, text.size() / 8));
  roomier += text;
  text.swap(roomier);
}

/// Writes the escaped form of a block to `out` and returns its end. `mask` marks the bytes to escape; `previous` is the
/// `separator` of the byte before the block.
template <const EscapeTable& kTable>
char* EscapeBlock(const char* block, std::uint64_t mask, Byte previous, char* out) {
  constexpr std::size_t kStep = kSeparates<kTable> ? kLineStep : kRunStep;
  std::size_t done = 0;
  for (; mask != 0; mask &= mask - 1) {
    const std::size_t at = std::countr_zero(mask);
    if (at != done) out = blocks::CopyRun<kStep>(block + done, at - done, out);
    const Escape& escape = kTable[static_cast<Byte>(block[at])];
    std::memcpy(out, &escape, sizeof escape);
    out += escape.size;
    if (kSeparates<kTable>) {
      out -= at == done ? previous & escape.separator : 0;
      previous = escape.separator;
    }
    done = at + 1;
  }
  return blocks::CopyRun<kStep>(block + done, kBlock - done, out);
}

/// EscapeBlock for `size` bytes, at most kPiece, of whole blocks.
template <const EscapeTable& kTable>
char* EscapeBlocks(const char* text, std::size_t size, Byte& previous, char* out) {
  std::size_t plain = 0;
  while (plain < size && !blocks::Any([block = text + plain](std::size_t i) { return IsEscaped(block[i]); })) {
    plain += kBlock;
  }
  std::memcpy(out, text, plain);
  out += plain;
  if (plain > 0) previous = 0;
  // All masks come first. Computed block by block, each mask would be delayed whenever the processor mispredicted the
  // number of escapes in the block before.
  std::uint64_t masks[kPiece / kBlock];
  for (std::size_t at = plain; at < size; at += kBlock) {
    masks[at / kBlock] = blocks::Mask([block = text + at](std::size_t i) { return IsEscaped(block[i]); });
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
  // The rest is padded to whole blocks. The padding needs no escapes, so its length is known and is cut off again.
  char rest[2 * kBlock + kSlack];
  std::memset(rest, ' ', sizeof rest);
  const std::size_t size = text.copy(rest, text.size());
  const std::size_t padded = (size + kBlock - 1) / kBlock * kBlock;
  text = {};
  append(EscapeBlocks<kTable>(rest, padded, previous, piece) - (padded - size));
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
