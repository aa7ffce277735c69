// The recurring pieces of an export's XML.
#pragma once

#include <string>
#include <string_view>

#include "export/XmlTree.h"

namespace solution {

/// All text directly inside `node`, which may come in several CDATA sections.
std::string Text(XmlNode node);

/// `text` with a line feed for each line ending: FileMaker writes CR, converting tools LF.
std::string WithLineFeeds(const std::string& text);

inline std::string_view Attribute(XmlNode node, std::string_view name) { return node.attribute(name).value(); }

/// True when the text directly inside `node` is a formula.
bool IsFormula(XmlNode node);

/// True when the text directly inside `node` is shown on a layout: it may contain `<<Field>>`.
bool IsLayoutText(XmlNode node);

/// True for what describes the export or repeats what is written elsewhere: ids of objects, hashes, FileMaker's
/// analysis of formulas. It says nothing about an element, and its analysis must not be taken for references.
bool IsBookkeeping(XmlNode node);

}  // namespace solution
