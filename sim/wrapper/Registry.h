// The functions and script steps that plug-ins have registered.
#pragma once

#include <vector>

#include "wrapper/Host.h"

namespace wrapper {

class Registry {
 public:
  /// 0, or FileMaker's error: 1210 when the id or the name is taken, 1200 when the registration is invalid.
  short Add(Registration registration);
  /// 0, or 1224 when `plugin` has registered nothing under `id`.
  short Remove(const std::string& plugin, short id);
  /// Removes everything that `owner` left registered and appends the names to `names`.
  void Drop(const std::string& owner, std::vector<std::u16string>& names);

  const std::vector<Registration>& entries() const { return entries_; }

 private:
  std::vector<Registration> entries_;
};

Registry& FunctionRegistry();
Registry& StepRegistry();

}  // namespace wrapper
