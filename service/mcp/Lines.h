// Reads lines from standard input and writes lines to standard output.
#pragma once

#include <atomic>
#include <cstddef>
#include <mutex>
#include <string>
#include <string_view>

namespace service::mcp {

/// Reads lines from a descriptor. One thread at a time.
class LineReader {
 public:
  LineReader(int descriptor, std::size_t longest) : descriptor_(descriptor), longest_(longest) {}

  enum class Outcome { kLine, kTooLong, kEnd };

  /// Waits for the next line. `line` is the line without its ending, valid until the next call. kTooLong: a line was
  /// longer than permitted and has been skipped. Text after the last newline is a line, too.
  Outcome Next(std::string_view& line);

 private:
  bool Fill();

  const int descriptor_;
  const std::size_t longest_;
  std::string buffer_;
  std::size_t begin_ = 0;    // of the bytes not yet returned
  std::size_t scanned_ = 0;  // there is no newline before this
  bool isSkipping_ = false;
};

/// Writes whole lines. Safe on any thread.
class LineWriter {
 public:
  explicit LineWriter(int descriptor) : descriptor_(descriptor) {}

  /// Writes `line` and a newline, and waits while the other side does not read. Does nothing after a failed write or
  /// after Close.
  void Write(const std::string& line);

  /// Makes waiting writes return at once. A line may stay incomplete.
  void Close() { isClosed_ = true; }

  bool IsClosed() const { return isClosed_; }

 private:
  const int descriptor_;
  std::mutex mutex_;
  std::atomic<bool> isClosed_ = false;
};

}  // namespace service::mcp
