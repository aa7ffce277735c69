// Values read as dates, times and timestamps.
#pragma once

#include <optional>

#include "calc/Value.h"

namespace calc {

/// The day number; the seconds; the seconds since the first day. A value of that type or a number is used directly, a
/// text is parsed, and a timestamp also gives its date and its time of day. nullopt for anything else, and outside the
/// calendar.
std::optional<Number> DateIn(const Value& value);
std::optional<Number> TimeIn(const Value& value);
std::optional<Number> TimestampIn(const Value& value);

}  // namespace calc
