// How long one idle call may wait for the programs whose clipboard it reads. FileMaker's main thread only.
#pragma once

#include <cstdint>
#include <limits>

/// While one exists, all reading from other programs ends kReadingLimitMs after it was created, whatever has been
/// received by then. One inside another has no effect. Reading without a limit, as the functions do, goes on as long as
/// data arrives. On macOS the system waits for the other program, within its own limits.
class ReadingLimit {
 public:
  static constexpr std::int64_t kReadingLimitMs = 2000;
  static constexpr std::int64_t kNone = std::numeric_limits<std::int64_t>::max();

  ReadingLimit();
  ~ReadingLimit();
  ReadingLimit(const ReadingLimit&) = delete;
  ReadingLimit& operator=(const ReadingLimit&) = delete;

  /// When reading must end, in SteadyMilliseconds; kNone while there is no limit.
  static std::int64_t Deadline();

 private:
  const bool isOutermost_;
};
