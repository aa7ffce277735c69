// Queries over the system tables and what they give; "|" stands between columns, "/" between rows.
#include "solution/Sql.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "calc/Unicode.h"
#include "sim/solution/SampleSolution.h"

namespace sim {
namespace {

using calc::Value;

struct Case {
  std::string query;
  const char* expected;
};

std::string Query(const std::string& query, const std::vector<Value>& arguments = {},
                  const HostBehaviour& behaviour = {}) {
  static const Solution sample = SampleSolution();
  return calc::ToUtf8(ExecuteSql(calc::ToUtf16(query), sample, u"|", u"/", arguments, behaviour));
}

TEST(Sql, Selects) {
  const Case cases[] = {
      {"SELECT * FROM FileMaker_Tables",
       "SysLog|1065091|Contacts|Sales|12/Orders|1065089|Orders|Sales|4/Remote|1065092|||/"
       "contacts|1065090|Contacts|Sales|12"},
      {"SELECT * FROM FileMaker_BaseTableFields WHERE FieldId = 1",
       "Orders|Title|varchar(20)|1|Normal|3|4/Contacts|Name|global varchar|1|Normal|1|12"},
      {"select\ttablename,\r\n\"TABLEID\" from filemaker_tables where TABLEID=1065089", "Orders|1065089"},
      {"SELECT COUNT ( * ) FROM FileMaker_Fields", "9"},
      {"SELECT DISTINCT FieldClass FROM FileMaker_Fields ORDER BY FieldClass DESC", "Summary/Normal/Calculated"},
      {"SELECT \"Title\", Due FROM \"ORDERS\" WHERE Number > 1 AND Due = 'x' ORDER BY Total", ""},
      {"SELECT * FROM Remote", ""}};
  for (const Case& test : cases) EXPECT_EQ(Query(test.query), test.expected) << test.query;
  const char16_t* query = u"SELECT BaseTableName, BaseTableId FROM FileMaker_BaseTables";
  EXPECT_EQ(ExecuteSql(query, SampleSolution(), u"", u"", {}, {}), u"Orders,129\rContacts,131");
}

TEST(Sql, Filters) {
  const Case cases[] = {{"FieldName <> 'Title' AND FieldId <= 2", "Number"},
                        {"FieldName = 'title' OR FieldName = '' OR FieldName <> ''", ""},
                        {"( FieldId >= 6 OR FieldName = 'Now' ) AND FieldId < 7", "Due/Now"},
                        {"FieldName LIKE '%t%e%'", "Latest/Title"},
                        {"FieldName IN ( 'Now', 'Due', '' )", "Due/Now"},
                        {"FieldId BETWEEN 2 AND 4 AND FieldId <> 3", "Now/Number"}};
  for (const Case& test : cases) {
    const std::string query =
        "SELECT FieldName FROM FileMaker_Fields WHERE TableName = 'Orders' AND (" + test.query + ") ORDER BY FieldName";
    EXPECT_EQ(Query(query), test.expected) << test.query;
  }
}

TEST(Sql, AnyErrorGivesAQuestionMark) {
  const HostBehaviour silent{.report = [](const std::string& line) { ADD_FAILURE() << line; }};
  for (const char* end : {"", "Nope", "Orders", "FileMaker_Tables;", "FileMaker_Tables WHERE", "FileMaker_Tables f.x",
                          "FileMaker_Tables WHERE TableName = 'x", "FileMaker_Tables WHERE TableName = 5",
                          "FileMaker_Tables WHERE TableName = ?", "FileMaker_Tables WHERE TableId = 'x'",
                          "FileMaker_Tables WHERE (TableId = 1", "FileMaker_Tables WHERE TableId BETWEEN 1 OR 2"}) {
    EXPECT_EQ(Query(std::string("SELECT TableName FROM ") + end, {}, silent), "?") << end;
  }
}

TEST(Sql, ParametersStandForTheQuestionMarksInOrder) {
  const char* query = "SELECT FieldName FROM FileMaker_Fields WHERE FieldId = ? AND TableName LIKE ?";
  const Value two = Value::OfNumber(2);
  const Value orders = Value::OfText(u"Ord%");
  EXPECT_EQ(Query(query, {two, orders, orders}), "Number");
  EXPECT_EQ(Query(query, {two}), "?");
}

TEST(Sql, LenientlyTakesDoubledQuotesAroundALiteralForOnePair) {
  const struct {
    const char* query;
    const char* strict;
    const char* lenient;
  } cases[] = {
      // What the schema builder asks.
      {"SELECT TableName, FieldName, FieldType, FieldClass FROM FileMaker_Fields WHERE TableName NOT LIKE ''Sys%'' "
       "ORDER BY TableName, FieldName",
       "?",
       "Orders|Due|global date|Normal/Orders|Latest|timestamp|Summary/Orders|Now|time|Calculated/"
       "Orders|Number|decimal|Normal/Orders|Scan|binary|Normal/Orders|Title|varchar(20)|Normal/"
       "Orders|Total|decimal|Calculated/contacts|Name|global varchar|Normal"},
      {"SELECT TableId FROM FileMaker_Tables WHERE TableName IN (''Orders'',''SysLog'')", "?", "1065091/1065089"},
      {"SELECT TableId FROM FileMaker_Tables WHERE TableName = ''Orders'", "?", "?"}};
  for (const auto& test : cases) {
    EXPECT_EQ(Query(test.query), test.strict) << test.query;
    EXPECT_EQ(Query(test.query, {}, {.lenientSql = true}), test.lenient) << test.query;
  }
}

}  // namespace
}  // namespace sim
