// How large messages may be.
#pragma once

#include <cstddef>
#include <cstdint>

namespace service::mcp {

inline constexpr std::size_t kLongestRequest = 64 << 20;
/// Clients stop reading at a line of 10 MB.
inline constexpr std::size_t kLongestAnswer = 9'500'000;
inline constexpr char kTooLong[] =
    "the answer is longer than the 10 MB that clients accept in one message: ask for less of it";
inline constexpr std::int64_t kRows = 200;  ///< rows of a list, unless the caller asks for another number

}  // namespace service::mcp
