// Runs a query: filters, orders, projects and joins.
#include "solution/Sql.h"

#include <algorithm>
#include <set>
#include <utility>
#include <vector>

#include "calc/Unicode.h"
#include "solution/SqlLexer.h"
#include "solution/SqlParser.h"

namespace sim {
namespace {

using calc::Value;

constexpr std::u16string_view kRefused = u"?";
constexpr const char* kNotKnownHere =
    "ExecuteSQL gives \"?\": the simulator does not know this part of FileMaker's SQL: ";
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

std::u16string Join(const SqlQuery& query, const std::vector<SqlRow>& rows, std::u16string_view columnSeparator,
                    std::u16string_view rowSeparator) {
  std::u16string result;
  std::set<std::vector<std::u16string>> seen;
  bool first = true;
  for (const SqlRow& row : rows) {
    std::vector<std::u16string> texts;
    for (const SqlColumn& column : query.columns) texts.push_back(column.value(row).AsText());
    if (query.distinct && !seen.insert(texts).second) continue;
    if (!first) result += rowSeparator;
    first = false;
    for (std::size_t at = 0; at < texts.size(); ++at) {
      if (at > 0) result += columnSeparator;
      result += texts[at];
    }
  }
  return result;
}

}  // namespace

std::u16string ExecuteSql(std::u16string_view sql, const Solution& solution, std::u16string_view columnSeparator,
                          std::u16string_view rowSeparator, std::span<const Value> arguments,
                          const HostBehaviour& behaviour) {
  try {
    const SqlQuery query = ParseSql(sql, behaviour.lenientSql, solution, arguments);
    std::vector<SqlRow> rows = Filtered(query);
    if (query.count) return calc::Number(static_cast<long long>(rows.size())).ToText();
    Sort(rows, query.order);
    return Join(query, rows, columnSeparator.empty() ? kDefaultColumnSeparator : columnSeparator,
                rowSeparator.empty() ? kDefaultRowSeparator : rowSeparator);
  } catch (const SqlUnknown& unknown) {
    if (behaviour.tell) behaviour.tell(std::string(kNotKnownHere) + calc::ToUtf8(unknown.part));
  } catch (const SqlRefused&) {
  }
  return std::u16string(kRefused);
}

}  // namespace sim
