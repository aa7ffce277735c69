// Everything that a formula can call by name.
#pragma once

#include <string_view>
#include <variant>

#include "calc/Environment.h"
#include "calc/Functions.h"
#include "calc/Syntax.h"

namespace calc {

/// Functions with a special call syntax.
enum class Form { kGet, kLet, kWhile };

struct Callable {
  std::variant<std::monostate, Form, const Builtin*, const ControlFunction*, const CustomFunction*, const HostFunction*>
      target;
  Signature signature;

  bool IsKnown() const { return !std::holds_alternative<std::monostate>(target); }
};

/// The engine's own functions first, then custom functions, then those of the application and its plug-ins.
Callable FindCallable(std::u16string_view name, Environment& environment);

}  // namespace calc
