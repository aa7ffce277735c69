// Queries over the system tables and their results.
#include "solution/Sql.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "calc/Unicode.h"
#include "sim/solution/SampleSolution.h"
#include "support/Rows.h"

namespace sim {
namespace {

using calc::Value;

std::string Query(const std::string& query, const std::vector<Value>& arguments = {},
                  const HostBehaviour& behaviour = {}) {
  static const Solution sample = SampleSolution();
  return calc::ToUtf8(ExecuteSql(calc::ToUtf16(query), sample, u"|", u"/", arguments, behaviour));
}

TEST(Sql, GivesTheRowsOrAQuestionMarkWithoutAReport) {
  const HostBehaviour silent{.report = [](const std::string& line) { ADD_FAILURE() << line; }};
  ExpectRows(SALES_EXPORTS "/queries.txt", [&](const auto& query) { return Query(query, {}, silent); });
  const char16_t* query = u"SELECT BaseTableName, BaseTableId FROM FileMaker_BaseTables";
  EXPECT_EQ(ExecuteSql(query, SampleSolution(), u"", u"", {}, {}), u"Orders,129\rContacts,131");
}

TEST(Sql, ParametersStandForTheQuestionMarksInOrder) {
  const char* query = "SELECT FieldName FROM FileMaker_Fields WHERE FieldId = ? AND TableName LIKE ?";
  const Value two = Value::OfNumber(2);
  const Value orders = Value::OfText(u"Ord%");
  EXPECT_EQ(Query(query, {two, orders, orders}), "Number");
  EXPECT_EQ(Query(query, {two}), "?");
}

TEST(Sql, LenientModeTreatsDoubledQuotesAroundALiteralAsOnePair) {
  ExpectRows(SALES_EXPORTS "/doubled-quotes.txt", [](const auto& query) {
    EXPECT_EQ(Query(query), "?") << query;
    return Query(query, {}, {.lenientSql = true});
  });
}

}  // namespace
}  // namespace sim
