// Finds the elements that the references in an export mean.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "design/Design.h"

namespace solution {

struct Target {
  Kind kind = Kind::kField;
  const Element* element = nullptr;  ///< null when it is in another file or missing
  std::string_view uuid;             ///< as written in the export; may be empty
  std::string_view name;             ///< as written in the export
  std::string_view occurrence;       ///< of a field: the occurrence through which it is named
};

/// What `node` refers to; nothing when it is not a reference to an element.
std::optional<Target> Resolve(const Design& design, XmlNode node);

}  // namespace solution
