// ExecuteSQL over the system tables: FileMaker_Tables, FileMaker_Fields and their base-table forms.
#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "calc/Value.h"
#include "solution/HostBehaviour.h"
#include "solution/Solution.h"

namespace sim {

struct SqlResult {
  int error = 0;  ///< 0, or FileMaker's number
  std::vector<std::vector<calc::Value>> rows;
};

/// Runs one SELECT over `solution` (SqlParser.cpp has the grammar). `arguments` replace the question marks in order;
/// surplus ones are ignored. Any other statement, and anything that FileMaker would refuse, is an error. SQL that only
/// the simulator does not support is also reported through `behaviour`. Table occurrences contain no records.
SqlResult SelectRows(std::u16string_view sql, const Solution& solution, std::span<const calc::Value> arguments,
                     const HostBehaviour& behaviour);

/// The rows as text: columns joined with `columnSeparator` (empty: a comma), rows with `rowSeparator` (empty: a
/// carriage return), with none after the last. "?" for an error.
std::u16string ExecuteSql(std::u16string_view sql, const Solution& solution, std::u16string_view columnSeparator,
                          std::u16string_view rowSeparator, std::span<const calc::Value> arguments,
                          const HostBehaviour& behaviour);

}  // namespace sim
