// The parts of an export, each read into its part of a Solution. `design` is the element Structure/AddAction; a catalog
// that would be empty is left out there, so a missing one is an empty one.
#pragma once

#include <pugixml.hpp>

#include "solution/Solution.h"

namespace sim {

/// Base tables, table occurrences and fields.
void ReadTables(pugi::xml_node design, Solution& solution);

/// Layouts, value lists and custom functions.
void ReadLists(pugi::xml_node design, Solution& solution);

/// Scripts with their steps.
void ReadScripts(pugi::xml_node design, Solution& solution);

/// Accounts, privilege sets and their extended privileges.
void ReadSecurity(pugi::xml_node design, Solution& solution);

/// Automatic login and start layout; `options` is the element Metadata/AddAction.
void ReadOpening(pugi::xml_node options, Solution& solution);

}  // namespace sim
