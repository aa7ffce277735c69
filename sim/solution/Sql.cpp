// Runs a query: filters, orders, projects and joins.
#include "solution/Sql.h"

#include <algorithm>
#include <set>
#include <utility>
#include <vector>

#include "calc/Errors.h"
#include "calc/Unicode.h"
#include "solution/SqlLexer.h"
#include "solution/SqlParser.h"

namespace sim {
namespace {

using calc::Value;

constexpr std::u16string_view kRefused = u"?";
constexpr const char* kNotKnownHere =
    "ExecuteSQL gives \"?\": the simulator does not support this part of FileMaker's SQL: ";
constexpr std::u16string_view kDefaultColumnSeparator = u",";
constexpr std::u16string_view kDefaultRowSeparator = u"\r";

std::vector<SqlRow> Filtered(const SqlQuery& query) {
  std::vector<SqlRow> rows;
  std::copy_if(query.rows.begin(), query.rows.end(), std::back_inserter(rows),
               [&query](const SqlRow& row) { return query.where(row).value_or(false); });
  return rows;
}

void Sort(std::vector<SqlRow>& rows, const std::vector<SqlOrder>& order) {
  using Keyed = std::pair<std::vector<Value>, SqlRow>;
  std::vector<Keyed> keyed;
  for (const SqlRow& row : rows) {
    std::vector<Value> keys;
    for (const SqlOrder& by : order) keys.push_back(by.column.value(row));
    keyed.emplace_back(std::move(keys), row);
  }
  std::stable_sort(keyed.begin(), keyed.end(), [&order](const Keyed& a, const Keyed& b) {
    for (std::size_t at = 0; at < order.size(); ++at) {
      const int relation = CompareSql(a.first[at], b.first[at]);
      if (relation != 0) return order[at].descending ? relation > 0 : relation < 0;
    }
    return false;
  });
  std::transform(keyed.begin(), keyed.end(), rows.begin(), [](const Keyed& item) { return item.second; });
}

using Row = std::vector<Value>;

std::vector<Row> Project(const SqlQuery& query, const std::vector<SqlRow>& rows) {
  std::vector<Row> result;
  std::set<std::vector<std::u16string>> seen;
  for (const SqlRow& row : rows) {
    Row values;
    std::vector<std::u16string> texts;
    for (const SqlColumn& column : query.columns) {
      values.push_back(column.value(row));
      texts.push_back(values.back().AsText());
    }
    if (!query.distinct || seen.insert(std::move(texts)).second) result.push_back(std::move(values));
  }
  return result;
}

std::u16string Join(const std::vector<Row>& rows, std::u16string_view columnSeparator,
                    std::u16string_view rowSeparator) {
  std::u16string result;
  for (std::size_t row = 0; row < rows.size(); ++row) {
    if (row > 0) result += rowSeparator;
    for (std::size_t column = 0; column < rows[row].size(); ++column) {
      if (column > 0) result += columnSeparator;
      result += rows[row][column].AsText();
    }
  }
  return result;
}

}  // namespace

SqlResult SelectRows(std::u16string_view sql, const Solution& solution, std::span<const Value> arguments,
                     const HostBehaviour& behaviour) {
  try {
    const SqlQuery query = ParseSql(sql, behaviour.lenientSql, solution, arguments);
    std::vector<SqlRow> rows = Filtered(query);
    if (query.count) return {0, {{Value::OfNumber(static_cast<long long>(rows.size()))}}};
    Sort(rows, query.order);
    return {0, Project(query, rows)};
  } catch (const SqlUnknown& unknown) {
    if (behaviour.report) behaviour.report(std::string(kNotKnownHere) + calc::ToUtf8(unknown.part));
  } catch (const SqlRefused&) {
  }
  return {calc::errors::kSqlSyntax, {}};
}

std::u16string ExecuteSql(std::u16string_view sql, const Solution& solution, std::u16string_view columnSeparator,
                          std::u16string_view rowSeparator, std::span<const Value> arguments,
                          const HostBehaviour& behaviour) {
  const SqlResult result = SelectRows(sql, solution, arguments, behaviour);
  if (result.error != 0) return std::u16string(kRefused);
  return Join(result.rows, columnSeparator.empty() ? kDefaultColumnSeparator : columnSeparator,
              rowSeparator.empty() ? kDefaultRowSeparator : rowSeparator);
}

}  // namespace sim
