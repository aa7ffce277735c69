// ExecuteSQL over the system tables: FileMaker_Tables, FileMaker_Fields and their base-table forms.
#pragma once

#include <span>
#include <string>
#include <string_view>

#include "sim/calc/Value.h"
#include "sim/solution/Solution.h"

namespace sim {

/// Runs `sql` over `solution`. Columns are joined with `columnSeparator`, rows with `rowSeparator`, with none after the
/// last. `arguments` stand for the question marks in order. Anything FileMaker would refuse gives the text "?".
/// `lenient` accepts a literal written between doubled single quotes.
std::u16string ExecuteSql(std::u16string_view sql, const Solution& solution, std::u16string_view columnSeparator,
                          std::u16string_view rowSeparator, std::span<const calc::Value> arguments, bool lenient);

}  // namespace sim
