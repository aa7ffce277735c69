// The engine's own functions, by topic, as tables.
#pragma once

#include <cstddef>
#include <span>
#include <string_view>

#include "calc/Environment.h"
#include "calc/Value.h"

namespace calc {

using Arguments = std::span<const Value>;

inline constexpr int kAnyNumber = -1;

/// What may stand between the parentheses of a call.
struct Signature {
  int minArguments = 0;
  int maxArguments = 0;  ///< or kAnyNumber
  /// Arguments after the first may come in lists, `[a ; b]`, of this many (kAnyNumber: of any number). 0: no lists.
  int listSize = 0;
};

/// A function of its arguments alone. Those that came in lists follow each other as if there were no lists.
struct Builtin {
  std::u16string_view name;  ///< as FileMaker spells it
  Signature signature;
  Value (*call)(Arguments) = nullptr;
  /// Whether it is called with error values too; for every other function an error among the arguments is the result.
  bool takesErrors = false;
};

/// No text may grow beyond this many units.
inline constexpr std::size_t kMaxTextLength = std::size_t{1} << 26;

std::span<const Builtin> TextFunctions();
std::span<const Builtin> SearchFunctions();
std::span<const Builtin> WordFunctions();
std::span<const Builtin> ListFunctions();
std::span<const Builtin> EncodingFunctions();
std::span<const Builtin> JsonFunctions();
std::span<const Builtin> NumberFunctions();
std::span<const Builtin> AggregateFunctions();
std::span<const Builtin> MathFunctions();
std::span<const Builtin> DateFunctions();
std::span<const Builtin> ConversionFunctions();

}  // namespace calc
