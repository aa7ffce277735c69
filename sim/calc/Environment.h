// The environment of a calculation: its file, its variables and the functions that others add.
#pragma once

#include <atomic>
#include <functional>
#include <map>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "calc/Value.h"

namespace calc {

/// A function that the application or a plug-in adds to the engine's own. Names are case-insensitive.
struct HostFunction {
  std::u16string name;
  int minArguments = 0;
  int maxArguments = 0;  ///< -1: any number
  std::function<Value(std::span<const Value> arguments)> call;
};

/// A custom function of a file: parameters by name, and a formula over them.
struct CustomFunction {
  std::u16string name;
  std::vector<std::u16string> parameters;
  std::u16string formula;
};

/// `$local` or `$$global` variables. Names are stored in lower case without dollar signs; repetitions count from 1.
using Variables = std::map<std::pair<std::u16string, int>, Value>;

/// Implemented by the simulated application, and by tests. All texts are UTF-16.
class Environment {
 public:
  virtual ~Environment() = default;

  /// Get ( parameter ); nullopt for an unknown parameter (error 1215). `parameter` is as written.
  virtual std::optional<Value> Get(std::u16string_view parameter) = 0;

  /// The value of a field; nullopt when the field is missing (error 102). `occurrence` is empty for a bare name.
  virtual std::optional<Value> Field(std::u16string_view occurrence, std::u16string_view field, int repetition) = 0;

  /// The full name of a field, `Occurrence::Field`; empty when the field is missing.
  virtual std::u16string FieldName(std::u16string_view occurrence, std::u16string_view field) = 0;

  /// Called with an unknown name, as written, before the calculation fails because of it.
  virtual void ReportUnknownName(std::u16string_view) {}

  /// nullptr when unknown. The result stays valid until the calculation ends.
  virtual const HostFunction* FindHostFunction(std::u16string_view name) = 0;
  virtual const CustomFunction* FindCustomFunction(std::u16string_view name) = 0;

  virtual Variables& Locals() = 0;
  virtual Variables& Globals() = 0;

  /// The cancel flag, queried once per calculation. A nonzero value ends the calculation with error 1; a signal handler
  /// or another thread may set it. nullptr: the calculation cannot be cancelled.
  virtual const std::atomic<int>* CancelFlag() const { return nullptr; }
};

}  // namespace calc
