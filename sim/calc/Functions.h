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

/// The arguments that a call accepts.
struct Signature {
  int minArguments = 0;
  int maxArguments = 0;  ///< or kAnyNumber
  /// Arguments after the first may come in lists, `[a ; b]`, of this many (kAnyNumber: of any number). 0: no lists.
  int listSize = 0;
};

/// A function that depends only on its arguments. Lists of arguments are passed flattened.
struct Builtin {
  std::u16string_view name;  ///< as FileMaker spells it
  Signature signature;
  Value (*call)(Arguments) = nullptr;
  /// Whether the function accepts error values; otherwise an error argument becomes the result.
  bool takesErrors = false;
};

/// The maximum length of a text, in units.
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
