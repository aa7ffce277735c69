// Changes a variable for the duration of a scope.
#pragma once

#include <utility>

namespace calc {

/// Sets `variable`, which must outlive the object, and restores the old value at the end of the scope, including on an
/// exception.
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
