// Queries over the system tables and what they give; "|" stands between columns, "/" between rows.
#include "sim/solution/Sql.h"

#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <vector>

#include "sim/calc/Unicode.h"
#include "tests/solution/SampleSolution.h"

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
      {"SELECT * FROM FileMaker_BaseTables", "Orders|129|4/Contacts|131|12"},
      {"SELECT * FROM FileMaker_BaseTableFields WHERE FieldId = 1",
       "Orders|Title|varchar(20)|1|Normal|3|4/Contacts|Name|global varchar|1|Normal|1|12"},
      {"select\ttablename,\r\n\"TABLEID\" from filemaker_tables where TABLEID=1065089", "Orders|1065089"},
      {"SELECT f.FieldName FROM FileMaker_Fields AS f WHERE F.FieldId = 7 ORDER BY f.\"TableName\"", "Scan"},
      {"SELECT COUNT ( * ) FROM FileMaker_Fields", "9"},
      {"SELECT DISTINCT FieldClass FROM FileMaker_Fields ORDER BY FieldClass DESC", "Summary/Normal/Calculated"},
      {"SELECT TableName FROM FileMaker_Tables ORDER BY BaseTableName DESC, TableId ASC",
       "Orders/contacts/SysLog/Remote"},
      {"SELECT TableName FROM FileMaker_Tables WHERE NOT ( BaseTableName = 'Orders' )", "SysLog/contacts"},
      {"SELECT \"Title\", Due FROM \"ORDERS\" WHERE Number > 1 AND Due = 'x' ORDER BY Total", ""},
      {"SELECT * FROM Remote", ""}};
  for (const Case& test : cases) EXPECT_EQ(Query(test.query), test.expected) << test.query;
  const char16_t* query = u"SELECT BaseTableName, BaseTableId FROM FileMaker_BaseTables";
  EXPECT_EQ(ExecuteSql(query, SampleSolution(), u"", u"", {}, {}), u"Orders,129\rContacts,131");
}

TEST(Sql, Filters) {
  const Case cases[] = {{"FieldName <> 'Title' AND FieldId <= 2", "Number"},
                        {"FieldName = 'title' OR FieldName = '' OR FieldName <> ''", ""},
                        {"FieldId >= 6 OR FieldName = 'Now' AND FieldId = 1", "Due/Scan"},
                        {"( FieldId >= 6 OR FieldName = 'Now' ) AND FieldId < 7", "Due/Now"},
                        {"NOT ( FieldId > 1 AND NOT FieldId = 7 )", "Scan/Title"},
                        {"FieldName LIKE '%t%e%'", "Latest/Title"},
                        {"FieldName LIKE 'N_w%%' OR FieldName LIKE ''", "Now"},
                        {"FieldName IN ( 'Now', 'Due', '' )", "Due/Now"},
                        {"FieldName NOT IN ('Now','')", ""},
                        {"FieldId NOT IN (1,'')", "?"},
                        {"FieldId BETWEEN 2 AND 4 AND FieldId <> 3", "Now/Number"},
                        {"FieldId NOT BETWEEN 2.5 AND 7", "Number/Title"},
                        {"FieldName = 'O''Hara' OR FieldId IS NOT NULL AND FieldId = 1", "Title"}};
  for (const Case& test : cases) {
    const std::string query =
        "SELECT FieldName FROM FileMaker_Fields WHERE TableName = 'Orders' AND (" + test.query + ") ORDER BY FieldName";
    EXPECT_EQ(Query(query), test.expected) << test.query;
  }
}

TEST(Sql, AnyErrorGivesAQuestionMark) {
  // Each line a beginning; the ends, between bars, make a refused query of it.
  const Case cases[] = {
      {"", "|SELECT|SELECT FROM FileMaker_Fields|SELECT TableName, FROM FileMaker_Tables|DELETE FROM Orders"},
      {"SELECT f.TableName FROM ", "FileMaker_Tables|FileMaker_Tables AS|FileMaker_Tables AS t|FileMaker_Tables f.x"},
      {"SELECT TableName ", "FileMaker_Tables|FROM|FROM Nope|FROM Orders|FROM FileMaker_BaseTables"},
      {"SELECT COUNT(", "*), TableName FROM FileMaker_Tables|*) FROM FileMaker_Tables ORDER BY TableName"},
      {"SELECT * FROM FileMaker_Tables ", ";|WHERE|ORDER TableName|ORDER BY|ORDER BY TableName TableId"},
      {"SELECT * FROM FileMaker_Tables WHERE TableName ", "|=|== 'x'|!= 'x'|= 'x|= \"Orders\"|= 5|= ?|IN ()|IN 'x'"},
      {"SELECT * FROM FileMaker_Tables WHERE TableId ", "= 'x'|LIKE '1%'|= 1x|= 1.|BETWEEN 1|BETWEEN 1 OR 2"},
      {"SELECT * FROM FileMaker_Tables WHERE ", "(TableId = 1|5|NOT|TableId = 1 AND|TableId = 1 TableId = 2"}};
  const HostBehaviour silent{.tell = [](const std::string& line) { ADD_FAILURE() << line; }};
  for (const Case& test : cases) {
    std::stringstream ends(std::string(test.expected) + "|");
    for (std::string end; std::getline(ends, end, '|');) {
      EXPECT_EQ(Query(test.query + end, {}, silent), "?") << test.query << end;
    }
  }
}

TEST(Sql, TellsWhatOnlyTheSimulatorDoesNotKnow) {
  const Case cases[] = {
      {"SELECT COUNT(*), TableName FROM FileMaker_Tables GROUP BY TableName", "GROUP"},
      {"SELECT upper(TableName) FROM FileMaker_Tables", "upper"},
      {"SELECT t.TableName FROM FileMaker_Tables t, FileMaker_Fields f", "more than one table"},
      {"SELECT * FROM FileMaker_Tables WHERE " + std::string(100'000, '('), "conditions as deep as these"}};
  for (const Case& test : cases) {
    std::string told;
    EXPECT_EQ(Query(test.query, {}, {.tell = [&told](const std::string& line) { told += line; }}), "?");
    EXPECT_TRUE(told.ends_with(std::string(": ") + test.expected)) << told;
  }
}

TEST(Sql, ParametersStandForTheQuestionMarksInOrder) {
  const char* query = "SELECT FieldName FROM FileMaker_Fields WHERE FieldId = ? AND TableName LIKE ?";
  const Value two = Value::OfNumber(2);
  const Value orders = Value::OfText(u"Ord%");
  EXPECT_EQ(Query(query, {two, orders, orders}), "Number");
  EXPECT_EQ(Query(query, {two}), "?");
  EXPECT_EQ(Query(query, {orders, two}), "?");
  EXPECT_EQ(Query(query, {two, Value()}), "") << "empty is NULL";
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
      {"SELECT TableId FROM FileMaker_Tables WHERE TableName = '''Orders'''", "", ""},
      {"SELECT COUNT(*) FROM FileMaker_Tables WHERE TableName <> ''''", "4", "4"},
      {"SELECT COUNT(*) FROM FileMaker_Tables WHERE TableName NOT IN ('')AND(TableName<>'')", "0", "0"},
      {"SELECT TableId FROM FileMaker_Tables WHERE TableName = ''Orders'", "?", "?"}};
  for (const auto& test : cases) {
    EXPECT_EQ(Query(test.query), test.strict) << test.query;
    EXPECT_EQ(Query(test.query, {}, {.lenientSql = true}), test.lenient) << test.query;
  }
}

}  // namespace
}  // namespace sim
