#include "design/Kind.h"

namespace solution {
namespace {

constexpr KindNames kNames[] = {
    {"file", "file", "files"},
    {"table", "table", "tables"},
    {"field", "field", "fields"},
    {"tableOccurrence", "table occurrence", "table occurrences"},
    {"relationship", "relationship", "relationships"},
    {"layout", "layout", "layouts"},
    {"script", "script", "scripts"},
    {"valueList", "value list", "value lists"},
    {"customFunction", "custom function", "custom functions"},
    {"customMenu", "custom menu", "custom menus"},
    {"customMenuSet", "custom menu set", "custom menu sets"},
    {"theme", "theme", "themes"},
    {"account", "account", "accounts"},
    {"privilegeSet", "privilege set", "privilege sets"},
    {"extendedPrivilege", "extended privilege", "extended privileges"},
    {"externalDataSource", "external data source", "external data sources"},
    {"baseDirectory", "base directory", "base directories"},
    {"folder", "layout folder", "layout folders"},
    {"folder", "script folder", "script folders"},
    {"folder", "custom function folder", "custom function folders"},
};
static_assert(std::size(kNames) == kKindCount);

}  // namespace

const KindNames& NamesOf(Kind kind) { return kNames[static_cast<std::size_t>(kind)]; }

bool IsFolder(Kind kind) { return kind >= Kind::kLayoutFolder; }

}  // namespace solution
