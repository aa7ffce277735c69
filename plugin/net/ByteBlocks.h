// Text in blocks of 64 bytes. These are plain loops over a block, which compilers turn into vector instructions.
#pragma once

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>

namespace blocks {

using Byte = unsigned char;

inline constexpr std::size_t kBlock = 64;        // a mask has a bit for each byte
inline constexpr std::size_t kRow = kBlock / 4;  // loops over a block take its four rows together

// Both directions of JSON's escapes copy the runs between them to the stack, and append that to the result in pieces.
inline constexpr std::size_t kPiece = 16 * kBlock;
inline constexpr std::size_t kRunStep = 16;  // between the escapes of XML most runs are shorter

static_assert(std::endian::native == std::endian::little);  // the first byte in memory is the lowest of a word

inline std::uint64_t LoadWord(const Byte* bytes) {
  std::uint64_t word;
  std::memcpy(&word, bytes, sizeof word);
  return word;
}

/// The mask of those positions of a block for which `test` holds.
template <typename Test>
std::uint64_t Mask(Test test) {
  constexpr std::uint64_t kLowBitsToHighByte = 0x0102040810204080;  // as a factor: moves the lowest bits of eight bytes
  Byte flags[kBlock];
  for (std::size_t i = 0; i < kRow; ++i) {
    flags[i] = test(i);
    flags[i + kRow] = test(i + kRow);
    flags[i + 2 * kRow] = test(i + 2 * kRow);
    flags[i + 3 * kRow] = test(i + 3 * kRow);
  }
  // Not a loop: g++ would unroll it too early and then not vectorise the loop above.
  const auto bits = [&flags](std::size_t at) { return LoadWord(flags + at) * kLowBitsToHighByte >> 56; };
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
bool Any(Test test) {
  const auto [low, high] = ColumnSums(test);
  return (low | high) != 0;
}

/// The sum of `count`, at most 63, over the positions of a block.
template <typename Count>
std::size_t Sum(Count count) {
  constexpr std::uint64_t kEvenBytes = 0x00ff00ff00ff00ff;
  constexpr std::uint64_t kSumToHighPair = 0x0001000100010001;  // as a factor: adds up the four pairs of bytes
  std::uint64_t sums = 0;
  for (const std::uint64_t word : ColumnSums(count)) sums += (word & kEvenBytes) + (word >> 8 & kEvenBytes);
  return sums * kSumToHighPair >> 48;
}

/// Copies `size` bytes in steps of kStep, which reads and writes up to kStep more bytes; returns the end of the copy.
template <std::size_t kStep>
char* CopyRun(const char* from, std::size_t size, char* to) {
  std::memcpy(to, from, kStep);
  for (std::size_t done = kStep; done < size; done += kStep) std::memcpy(to + done, from + done, kStep);
  return to + size;
}

}  // namespace blocks
