// The recurring pieces of an export's XML.
#pragma once

#include <pugixml.hpp>
#include <string>
#include <string_view>

namespace solution {

/// All text directly inside `node`, which may come in several CDATA sections.
std::string Text(pugi::xml_node node);

inline std::string_view Attribute(pugi::xml_node node, const char* name) { return node.attribute(name).value(); }

/// True when the text directly inside `node` is a formula.
bool IsFormula(pugi::xml_node node);

/// True when the text directly inside `node` is shown on a layout: it may contain `<<Field>>`.
bool IsLayoutText(pugi::xml_node node);

/// True for what describes the export or repeats what stands elsewhere: ids of objects, hashes, FileMaker's analysis of
/// formulas. It says nothing about an element, and its analysis must not be taken for references.
bool IsBookkeeping(pugi::xml_node node);

}  // namespace solution
