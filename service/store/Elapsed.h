// Time that has passed on a clock that people can set.
#pragma once

#include <cstdint>

namespace service {

/// Whether `time` was less than `span` before `now`; all are milliseconds. A time after `now` counts as long ago: the
/// clock was set back, and nothing may wait until it has caught up.
inline bool IsWithin(std::int64_t time, std::int64_t span, std::int64_t now) {
  return time <= now && now - time < span;
}

}  // namespace service
