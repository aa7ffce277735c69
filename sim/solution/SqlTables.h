// The tables that ExecuteSQL can see: the system tables, and a file's own tables, which hold no records here.
#pragma once

#include <optional>
#include <string_view>
#include <vector>

#include "calc/Value.h"
#include "solution/Solution.h"

namespace sim {

/// What a column or an operand may be compared with. Moments compare with anything.
enum class SqlType { kText, kNumber, kAny };

/// What one row of a system table is about; members that its table has no use for are nullptr.
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
