// A value for the length of a scope.
#pragma once

#include <utility>

namespace calc {

/// Gives `variable`, which must outlive the object, a new value, and the old one back at the end of the scope, whether
/// it is left by a return or an exception.
template <class T>
class Temporarily {
 public:
  Temporarily(T& variable, T value) : variable_(variable), before_(std::exchange(variable, std::move(value))) {}
  ~Temporarily() { variable_ = std::move(before_); }
  Temporarily(const Temporarily&) = delete;
  Temporarily& operator=(const Temporarily&) = delete;

 private:
  T& variable_;
  T before_;
};

}  // namespace calc
