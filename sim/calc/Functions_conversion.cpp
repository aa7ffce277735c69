// Type conversions, and the tests that accept error values.
#include "calc/Functions.h"
#include "calc/Operators.h"

namespace calc {
namespace {

Value GetAsText(Arguments arguments) { return Value::OfText(arguments[0].AsText()); }

// Text without digits is not a number.
Value GetAsNumber(Arguments arguments) {
  if (arguments[0].type() == Type::kText && !NumberIn(arguments[0].AsText())) return {};
  return NumberValue(arguments[0].AsNumber());
}

Value GetAsBoolean(Arguments arguments) { return Value::OfBoolean(arguments[0].AsBoolean()); }
Value IsEmpty(Arguments arguments) { return Value::OfBoolean(arguments[0].IsEmpty()); }
Value IsValid(Arguments arguments) { return Value::OfBoolean(!arguments[0].IsError()); }

constexpr Builtin kConversionFunctions[] = {
    {u"GetAsBoolean", {1, 1}, GetAsBoolean, true},
    {u"GetAsNumber", {1, 1}, GetAsNumber},
    {u"GetAsText", {1, 1}, GetAsText},
    {u"IsEmpty", {1, 1}, IsEmpty, true},
    {u"IsValid", {1, 1}, IsValid, true},
};

}  // namespace

std::span<const Builtin> ConversionFunctions() { return kConversionFunctions; }

}  // namespace calc
