// Functions of any number of values; empty values are ignored.
#include <vector>

#include "calc/Functions.h"
#include "calc/Operators.h"

namespace calc {
namespace {

std::vector<Value> Filled(Arguments arguments) {
  std::vector<Value> values;
  for (const Value& value : arguments) {
    if (!value.IsEmpty()) values.push_back(value);
  }
  return values;
}

Number Total(const std::vector<Value>& values) {
  Number total;
  for (const Value& value : values) total = total + value.AsNumber();
  return total;
}

// The first extreme value; `direction` is 1 for the largest, -1 for the smallest.
Value Extreme(Arguments arguments, int direction) {
  Value best;
  for (const Value& value : Filled(arguments)) {
    if (best.IsEmpty() || CompareValues(value, best) * direction > 0) best = value;
  }
  return best;
}

Value Max(Arguments arguments) { return Extreme(arguments, 1); }
Value Min(Arguments arguments) { return Extreme(arguments, -1); }
Value Sum(Arguments arguments) { return NumberValue(Total(Filled(arguments))); }
Value Count(Arguments arguments) { return Value::OfNumber(static_cast<long long>(Filled(arguments).size())); }

Value Average(Arguments arguments) {
  const std::vector<Value> values = Filled(arguments);
  const auto average = Total(values).DividedBy(static_cast<long long>(values.size()));
  return average ? NumberValue(*average) : Value();
}

constexpr Builtin kAggregateFunctions[] = {
    {u"Average", {1, kAnyNumber}, Average}, {u"Count", {1, kAnyNumber}, Count}, {u"Max", {1, kAnyNumber}, Max},
    {u"Min", {1, kAnyNumber}, Min},         {u"Sum", {1, kAnyNumber}, Sum},
};

}  // namespace

std::span<const Builtin> AggregateFunctions() { return kAggregateFunctions; }

}  // namespace calc
