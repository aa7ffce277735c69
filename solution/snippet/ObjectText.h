// The objects in a snippet as readable text.
#pragma once

#include <string>

#include "export/XmlTree.h"

namespace solution {

/// What `object` is and its name, on one line: "Script “Import”", "Field Orders::Total".
std::string ObjectTitle(XmlNode object);

/// The content of `object`: lines that each end with a line feed.
std::string ObjectText(XmlNode object);

}  // namespace solution
