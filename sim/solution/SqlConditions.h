// The predicates of a WHERE clause, with SQL's three truth values. Empty text is NULL.
#pragma once

#include <functional>
#include <optional>
#include <string_view>
#include <vector>

#include "calc/Value.h"
#include "solution/SqlTables.h"

namespace sim {

/// True, false or, if a NULL is involved, unknown.
using SqlTruth = std::optional<bool>;
using SqlCondition = std::function<SqlTruth(const SqlRow& row)>;

/// A column, or a value when it has no column.
struct SqlOperand {
  SqlType type = SqlType::kAny;
  std::optional<SqlColumn> column;
  calc::Value constant;
};

/// Negative, zero or positive: numbers by value, everything else by its code units.
int CompareSql(const calc::Value& a, const calc::Value& b);

bool IsSqlComparison(std::u16string_view symbol);

/// These throw SqlRefused when the operands' types cannot be compared.
SqlCondition SqlComparison(const SqlOperand& left, std::u16string_view symbol, const SqlOperand& right);
SqlCondition SqlLike(const SqlOperand& text, const SqlOperand& pattern);

SqlCondition SqlIsNull(const SqlOperand& operand);
SqlCondition SqlNot(SqlCondition condition);
SqlCondition SqlAll(std::vector<SqlCondition> conditions);
SqlCondition SqlAny(std::vector<SqlCondition> conditions);

}  // namespace sim
