#include "clipboard/ReadingLimit.h"

#include <optional>

#include "core/Clock.h"

namespace {

std::optional<std::int64_t> g_startMs;  // of the outermost limit

}  // namespace

ReadingLimit::ReadingLimit() : isOutermost_(!g_startMs) {
  if (isOutermost_) g_startMs = SteadyMilliseconds();
}

ReadingLimit::~ReadingLimit() {
  if (isOutermost_) g_startMs.reset();
}

std::int64_t ReadingLimit::Deadline() { return g_startMs ? *g_startMs + kReadingLimitMs : kNone; }
