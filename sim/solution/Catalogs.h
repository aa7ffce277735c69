// The parts of an export, each read into its part of a Solution. `design` is the element Structure/AddAction; a catalog
// that would be empty is left out there, so a missing one is an empty one.
#pragma once

#include "export/XmlTree.h"

#include "solution/Solution.h"

namespace sim {

/// Base tables, table occurrences and fields.
void ReadTables(solution::XmlNode design, Solution& solution);

/// Layouts, value lists and custom functions.
void ReadLists(solution::XmlNode design, Solution& solution);

/// Scripts with their steps.
void ReadScripts(solution::XmlNode design, Solution& solution);

/// Accounts, privilege sets and their extended privileges.
void ReadSecurity(solution::XmlNode design, Solution& solution);

/// Automatic login and start layout; `options` is the element Metadata/AddAction.
void ReadOpening(solution::XmlNode options, Solution& solution);

}  // namespace sim
