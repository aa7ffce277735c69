// Values read as dates, times and timestamps.
#pragma once

#include <optional>

#include "calc/Value.h"

namespace calc {

/// The day number, the seconds, the seconds since the first day: of a value of that type or a number as it is, of a
/// text as it reads. A timestamp also gives its date and its time of day. nullopt for anything else and for what lies
/// outside the calendar.
std::optional<Number> DateIn(const Value& value);
std::optional<Number> TimeIn(const Value& value);
std::optional<Number> TimestampIn(const Value& value);

}  // namespace calc
