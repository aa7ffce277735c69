#include "net/Base64.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>

namespace {

constexpr char kAlphabet[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";

using Pair = std::array<char, 2>;

/// Two characters for each value of 12 bits: half as many look-ups as for single characters.
constexpr auto kPairs = [] {
  std::array<Pair, 4096> pairs{};
  for (std::size_t bits = 0; bits < pairs.size(); ++bits) pairs[bits] = {kAlphabet[bits >> 6], kAlphabet[bits & 63]};
  return pairs;
}();

constexpr std::size_t kUnit = 24;            // bytes encoded by one turn of the loop
constexpr std::size_t kUnitCharacters = 32;  // what they become
constexpr std::size_t kOverread = 2;         // bytes read after a unit

// Units encoded on the stack before they are appended: resizing the result first would fill it with zeros. Few, so that
// storing them in fresh memory overlaps with encoding the next ones.
constexpr std::size_t kUnitsAtOnce = 16;

/// The eight bytes at `bytes`, the first as the highest. Compilers turn this form into a single instruction.
inline std::uint64_t LoadBigEndian(const char* bytes) {
  static_assert(std::endian::native == std::endian::little);
  std::uint64_t word;
  std::memcpy(&word, bytes, sizeof word);
  word = word >> 32 | word << 32;
  word = (word >> 16 & 0x0000ffff0000ffff) | (word & 0x0000ffff0000ffff) << 16;
  return (word >> 8 & 0x00ff00ff00ff00ff) | (word & 0x00ff00ff00ff00ff) << 8;
}

/// Encodes six bytes; reads two more. With memcpy, fortified builds would check the bounds of each pair.
inline void EncodeSix(const char* bytes, char* out) {
  const std::uint64_t word = LoadBigEndian(bytes);
  std::copy_n(kPairs[word >> 52].data(), 2, out);
  std::copy_n(kPairs[word >> 40 & 4095].data(), 2, out + 2);
  std::copy_n(kPairs[word >> 28 & 4095].data(), 2, out + 4);
  std::copy_n(kPairs[word >> 16 & 4095].data(), 2, out + 6);
}

/// Encodes `units` units and reads kOverread bytes after them; returns the end of the output.
char* EncodeUnits(const char* bytes, std::size_t units, char* out) {
  for (; units != 0; --units, bytes += kUnit, out += kUnitCharacters) {
    EncodeSix(bytes, out);
    EncodeSix(bytes + 6, out + 8);
    EncodeSix(bytes + 12, out + 16);
    EncodeSix(bytes + 18, out + 24);
  }
  return out;
}

}  // namespace

std::size_t Base64Length(std::size_t byteCount) { return (byteCount + 2) / 3 * 4; }

std::string Base64Encode(std::string_view bytes) {
  std::string result;
  result.reserve(Base64Length(bytes.size()));
  Base64Append(bytes, result);
  return result;
}

void Base64Append(std::string_view bytes, std::string& result) {
  char piece[kUnitsAtOnce * kUnitCharacters];
  const char* from = bytes.data();
  std::size_t left = bytes.size();
  while (left >= kUnit + kOverread) {
    const std::size_t units = std::min((left - kOverread) / kUnit, kUnitsAtOnce);
    result.append(piece, EncodeUnits(from, units, piece) - piece);
    from += units * kUnit;
    left -= units * kUnit;
  }
  // The last bytes are padded with zeros for encoding; characters that encode only padding are cut off.
  char rest[2 * kUnit + kOverread] = {};
  std::copy_n(from, left, rest);
  EncodeUnits(rest, 2, piece);
  result.append(piece, Base64Length(left));
  const std::size_t missing = (3 - left % 3) % 3;
  result.replace(result.size() - missing, missing, missing, '=');
}
