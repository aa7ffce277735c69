// Parses a query and binds its names to a table.
#pragma once

#include <span>
#include <string_view>
#include <vector>

#include "calc/Value.h"
#include "solution/Solution.h"
#include "solution/SqlConditions.h"
#include "solution/SqlTables.h"

namespace sim {

struct SqlOrder {
  SqlColumn column;
  bool descending = false;
};

struct SqlQuery {
  std::vector<SqlRow> rows;  ///< of the table, before `where`
  bool distinct = false;
  bool count = false;  ///< COUNT(*): there are no columns then
  std::vector<SqlColumn> columns;
  SqlCondition where;
  std::vector<SqlOrder> order;
};

/// Throws SqlRefused for text that is not a query, for names that are not in `solution` and for types that cannot be
/// compared; SqlUnknown for text that may be a query in FileMaker. The query refers to `solution`.
SqlQuery ParseSql(std::u16string_view sql, bool lenient, const Solution& solution,
                  std::span<const calc::Value> arguments);

}  // namespace sim
