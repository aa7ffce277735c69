// What the design functions list, in which order, and for which file.
#include "sim/solution/DesignFunctions.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "sim/calc/Unicode.h"
#include "tests/solution/SampleSolution.h"

namespace sim {
namespace {

class DesignFunctionsTest : public testing::Test {
 protected:
  DesignFunctionsTest() {
    dotted_.fileName = u"Log.v2.fmp12";
    dotted_.name = u"Log.v2";
    dotted_.occurrences = {{1, u"Entries", {}}};
    closed_ = dotted_;
    closed_.fileName = u"Closed.fmp12";
    closed_.name = u"Closed";
    open_.files = {&sales_, &dotted_};
    open_.windows = {{u"Log", &dotted_}, {u"Sales", &sales_}, {u"Sales - 2", &sales_}};
  }

  /// Carriage returns as |; "no function" or "wrong number" when FileMaker could not parse the call.
  std::string Call(std::u16string_view name, const std::vector<std::u16string>& arguments) {
    const auto functions = DesignFunctions(open_, current_, behaviour_);
    const auto function = std::find_if(functions.begin(), functions.end(),
                                       [name](const calc::HostFunction& candidate) { return candidate.name == name; });
    if (function == functions.end()) return "no function";
    const int count = static_cast<int>(arguments.size());
    if (count < function->minArguments || (function->maxArguments >= 0 && count > function->maxArguments)) {
      return "wrong number";
    }
    std::vector<calc::Value> values;
    for (const auto& argument : arguments) values.push_back(calc::Value::OfText(argument));
    std::string text = calc::ToUtf8(function->call(values).AsText());
    std::replace(text.begin(), text.end(), '\r', '|');
    return text;
  }

  Solution sales_ = SampleSolution();
  Solution dotted_;
  Solution closed_;
  OpenFiles open_;
  const Solution* current_ = &sales_;
  HostBehaviour behaviour_;
};

TEST_F(DesignFunctionsTest, ListNamesInTheOrderOfTheirKind) {
  const struct {
    const char16_t* name;
    std::vector<std::u16string> arguments;
    const char* expected;
  } cases[] = {
      {u"TableNames", {u""}, "Orders|contacts|SysLog|Remote"},
      {u"TableIDs", {u""}, "1065089|1065090|1065091|1065092"},
      {u"BaseTableNames", {u""}, "Orders|Contacts"},
      {u"LayoutNames", {u""}, "List|-|Orders|Blank"},
      {u"ScriptNames", {u""}, "Start|-|Reset"},
      {u"ValueListNames", {u""}, "Names|YN"},
      {u"ValueListItems", {u"", u"yn"}, "Yes|No"},
      {u"ValueListItems", {u"", u"Names"}, ""},
      {u"ValueListItems", {u"", u"Nope"}, ""},
      {u"PrivilegeSetNames", {u""}, "[Full Access]|[Read-Only Access]"},
      {u"CustomFunctionNames", {u""}, "Zip|Add"},
      {u"CustomFunctionNames", {}, "Zip|Add"},
      {u"WindowNames", {}, "Log|Sales|Sales - 2"},
      {u"WindowNames", {u""}, "Sales|Sales - 2"},
      {u"WindowNames", {u"Log.v2.fmp12"}, "Log"},
      {u"WindowNames", {u"Closed"}, ""},
      {u"DatabaseNames", {}, "Sales|Log.v2"},
      {u"ExecuteSQL", {u"SELECT TableId FROM FileMaker_Tables WHERE TableName = ?", u"", u"", u"SysLog"}, "1065091"},
      {u"ExecuteSQL",
       {u"SELECT FieldId, FieldName FROM FileMaker_BaseTableFields WHERE FieldId < 3", u"::", u"|"},
       "2::Number|1::Title|1::Name"},
      {u"ExecuteSQL", {u"SELECT", u""}, "wrong number"},
      {u"ScriptNames", {}, "wrong number"},
      {u"FieldNames", {u""}, "wrong number"}};
  for (const auto& test : cases) EXPECT_EQ(Call(test.name, test.arguments), test.expected) << calc::ToUtf8(test.name);
}

TEST_F(DesignFunctionsTest, FieldsComeFromALayoutsTableBeforeAnOccurrenceOfThatName) {
  const struct {
    const char16_t* name;
    std::vector<std::u16string> arguments;
    const char* expected;
  } cases[] = {{u"FieldNames", {u"", u"ORDERS"}, "Name"},
               {u"FieldNames", {u"", u"List"}, "Name"},
               {u"FieldNames", {u"", u"Contacts"}, "Name"},
               {u"FieldNames", {u"", u"Remote"}, ""},
               {u"FieldNames", {u"", u"Blank"}, ""},
               {u"FieldNames", {u"", u"Zoo"}, ""},
               {u"FieldNames", {u"", u"-"}, ""},
               {u"FieldNames", {u"", u"Nope"}, ""},
               {u"FieldType", {u"", u"Orders::number"}, "Standard Number Indexed 1"},
               {u"FieldType", {u"", u"Title"}, "Standard Text Unindexed 3"},
               {u"FieldType", {u"", u"Total"}, "StoredCalc Number Unindexed 1"},
               {u"FieldType", {u"", u"Now"}, "UnstoredCalc Time Unindexed 1"},
               {u"FieldType", {u"", u"Latest"}, "Summary Timestamp Unindexed 1"},
               {u"FieldType", {u"", u"Orders::Due"}, "Global Date Unindexed 1"},
               {u"FieldType", {u"", u"Orders::Name"}, ""},
               {u"FieldType", {u"", u"Nope::Title"}, ""},
               {u"FieldComment", {u"", u"Orders::Number"}, "unique"},
               {u"FieldRepetitions", {u"", u"List", u"Name"}, "1"},
               {u"FieldRepetitions", {u"", u"List", u"Title"}, ""}};
  for (const auto& test : cases)
    EXPECT_EQ(Call(test.name, test.arguments), test.expected) << calc::ToUtf8(test.arguments[1]);
  sales_.layouts.clear();
  EXPECT_EQ(Call(u"FieldNames", {u"", u"ORDERS"}), "Title|Number|Total|Now|Latest|Due|Scan");
  EXPECT_EQ(Call(u"FieldIDs", {u"", u"ORDERS"}), "1|2|3|4|5|6|7");
  EXPECT_EQ(Call(u"FieldRepetitions", {u"", u"Orders", u"title"}), "3");
}

TEST_F(DesignFunctionsTest, TheFileIsNamedWithoutRegardToCaseAndWithItsExtensionIfItHoldsAPeriod) {
  const struct {
    const char16_t* file;
    const char* expected;
  } cases[] = {{u"SALES", "Start|-|Reset"},
               {u"sales.FMP12", "Start|-|Reset"},
               {u"Log.v2", ""},
               {u"Closed", ""},
               {u"Sales.xml", ""},
               {u"fmp12", ""}};
  for (const auto& test : cases) EXPECT_EQ(Call(u"ScriptNames", {test.file}), test.expected) << calc::ToUtf8(test.file);
  EXPECT_EQ(Call(u"TableNames", {u"log.v2.fmp12"}), "Entries");
  current_ = &dotted_;
  EXPECT_EQ(Call(u"TableNames", {u""}), "Entries");
  current_ = nullptr;
  EXPECT_EQ(Call(u"TableNames", {u""}), "");
  EXPECT_EQ(Call(u"ExecuteSQL", {u"SELECT * FROM FileMaker_Tables", u"", u""}), "?");
}

TEST_F(DesignFunctionsTest, AsInFileMakerSomeListsHaveNoFunction) {
  behaviour_.allDesignFunctions = false;
  EXPECT_EQ(Call(u"PrivilegeSetNames", {u""}), "no function");
  EXPECT_EQ(Call(u"CustomFunctionNames", {u""}), "no function");
  EXPECT_EQ(Call(u"ScriptNames", {u""}), "Start|-|Reset");
}

}  // namespace
}  // namespace sim
