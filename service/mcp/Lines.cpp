#include "mcp/Lines.h"

#include <poll.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <climits>
#include <utility>

namespace service::mcp {
namespace {

constexpr std::size_t kPiece = 64 << 10;
constexpr std::size_t kWithoutWaiting = PIPE_BUF;  // a writable pipe accepts at least this much without blocking
constexpr int kLookMilliseconds = 50;

// The parent process may have made the descriptor non-blocking.
bool CanRead(int descriptor) {
  pollfd entry{descriptor, POLLIN, 0};
  return poll(&entry, 1, -1) > 0 || errno == EINTR;
}

bool CanWrite(int descriptor) {
  pollfd entry{descriptor, POLLOUT, 0};
  return poll(&entry, 1, kLookMilliseconds) > 0;
}

}  // namespace

bool LineReader::Fill() {
  buffer_.erase(0, begin_);
  scanned_ -= begin_;
  begin_ = 0;
  const std::size_t size = buffer_.size();
  buffer_.resize(size + kPiece);
  ssize_t count = 0;
  do {
    count = read(descriptor_, buffer_.data() + size, kPiece);
  } while (count < 0 && (errno == EINTR || (errno == EAGAIN && CanRead(descriptor_))));
  buffer_.resize(size + static_cast<std::size_t>(std::max<ssize_t>(count, 0)));
  return count > 0;
}

LineReader::Outcome LineReader::Next(std::string_view& line) {
  for (;;) {
    const std::size_t newline = buffer_.find('\n', scanned_);
    const bool isWhole = newline != std::string::npos;
    scanned_ = isWhole ? newline : buffer_.size();
    if (scanned_ - begin_ > longest_ && !isSkipping_) {
      isSkipping_ = true;
      return Outcome::kTooLong;
    }
    if (isSkipping_) begin_ = scanned_;
    if (isWhole) {
      line = std::string_view(buffer_).substr(begin_, newline - begin_);
      begin_ = scanned_ = newline + 1;
      if (!std::exchange(isSkipping_, false)) return Outcome::kLine;
      continue;
    }
    if (Fill()) continue;
    line = std::string_view(buffer_).substr(begin_);
    begin_ = scanned_;
    return line.empty() || isSkipping_ ? Outcome::kEnd : Outcome::kLine;
  }
}

void LineWriter::Write(const std::string& line) {
  const std::lock_guard lock(mutex_);
  const std::string text = line + '\n';
  for (std::size_t written = 0; written < text.size() && !isClosed_;) {
    if (!CanWrite(descriptor_)) continue;
    const ssize_t count = write(descriptor_, text.data() + written, std::min(kWithoutWaiting, text.size() - written));
    if (count < 0 && errno != EINTR && errno != EAGAIN) isClosed_ = true;
    if (count > 0) written += static_cast<std::size_t>(count);
  }
}

}  // namespace service::mcp
