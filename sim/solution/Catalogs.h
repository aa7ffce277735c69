// The parts of an export, each read into its part of a Solution. `design` is the element Structure/AddAction. FileMaker
// leaves out empty catalogs, so a missing catalog is an empty one. All throw Damage for an export that FileMaker does
// not write.
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
