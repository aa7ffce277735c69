// The tables that ExecuteSQL can see: the system tables, and a file's own tables, which contain no records here.
#pragma once

#include <optional>
#include <string_view>
#include <vector>

#include "calc/Value.h"
#include "solution/Solution.h"

namespace sim {

/// Which types may be compared with each other. Dates and times may be compared with anything.
enum class SqlType { kText, kNumber, kAny };

/// What one row of a system table describes; members that its table does not use are nullptr.
struct SqlRow {
  const Solution* solution = nullptr;
  const TableOccurrence* occurrence = nullptr;
  const BaseTable* table = nullptr;
  const Field* field = nullptr;
};

struct SqlColumn {
  std::u16string_view name;
  SqlType type = SqlType::kText;
  calc::Value (*value)(const SqlRow& row) = nullptr;  ///< empty text is NULL
};

struct SqlTable {
  std::vector<SqlColumn> columns;
  std::vector<SqlRow> rows;
};

/// The system table, or table occurrence, of that name in any case; nullopt when there is none. The table refers to
/// `solution`.
std::optional<SqlTable> FindSqlTable(std::u16string_view name, const Solution& solution);

}  // namespace sim
