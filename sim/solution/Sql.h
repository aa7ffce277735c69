// ExecuteSQL over the system tables: FileMaker_Tables, FileMaker_Fields and their base-table forms.
#pragma once

#include <span>
#include <string>
#include <string_view>

#include "calc/Value.h"
#include "solution/HostBehaviour.h"
#include "solution/Solution.h"

namespace sim {

/// Runs one SELECT over `solution` (the grammar stands in SqlParser.cpp). Columns are joined with `columnSeparator`
/// (empty: a comma), rows with `rowSeparator` (empty: a carriage return), with none after the last. `arguments` stand
/// for the question marks in order; left-over ones do no harm. Anything else, and anything FileMaker would refuse,
/// gives the text "?"; where only the simulator does not know the SQL, `behaviour` tells. Table occurrences hold no
/// records.
std::u16string ExecuteSql(std::u16string_view sql, const Solution& solution, std::u16string_view columnSeparator,
                          std::u16string_view rowSeparator, std::span<const calc::Value> arguments,
                          const HostBehaviour& behaviour);

}  // namespace sim
