// Keys: texts that address an element of a design, also in exports without UUIDs.
#pragma once

#include <string>
#include <string_view>

#include "design/Design.h"

namespace solution {

/// The UUID of `element`, which belongs to `design`. Where the export has none, or another element has the same, it is
/// the kind and the id: "script:7", "layoutFolder:3", "field:129.4" with the ids of table and field.
std::string KeyOf(const Design& design, const Element& element);

/// The element with this key; null when there is none.
const Element* FindKey(const Design& design, std::string_view key);

}  // namespace solution
