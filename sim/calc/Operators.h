// The operators on values.
#pragma once

#include <span>

#include "calc/Syntax.h"
#include "calc/Value.h"

namespace calc {

/// `left op right` for every operator but `&`. Quotients are rounded to `precision` places.
Value Apply(Operator op, const Value& left, const Value& right, int precision);
/// The concatenated texts of `values`, for `&`.
Value Concatenate(std::span<const Value> values);
/// `op operand`, for plus, minus and not.
Value ApplyPrefix(Operator op, const Value& operand);

/// An arithmetic result as a value; an error if it is out of FileMaker's range.
Value NumberValue(const Number& number);

/// Negative, zero or positive. Numbers, dates and times compare by their numbers, everything else as text.
int CompareValues(const Value& left, const Value& right);

}  // namespace calc
