// What the design functions list, in which order, and for which file.
#include "sim/solution/DesignFunctions.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <sstream>
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
    dotted_.valueLists = {{1, u"Levels", u"High"}};
    open_.files = {&sales_, &dotted_};
    open_.windows = {{u"Log", &dotted_}, {u"Sales", &sales_}, {u"Sales - 2", &sales_}};
  }

  struct Case {
    const char* call;  ///< the function and its arguments, separated by semicolons
    const char* expected;
  };

  /// Carriage returns as |; "no function" or "wrong number" when FileMaker could not parse the call.
  std::string Call(const char* call) {
    std::vector<calc::Value> arguments;
    std::stringstream parts(call);
    for (std::string part; std::getline(parts, part, ';');) {
      arguments.push_back(calc::Value::OfText(calc::ToUtf16(part)));
    }
    const std::u16string name = arguments.front().AsText();
    arguments.erase(arguments.begin());
    const auto functions = DesignFunctions(open_, current_, behaviour_);
    const auto function = std::find_if(functions.begin(), functions.end(),
                                       [&name](const calc::HostFunction& candidate) { return candidate.name == name; });
    if (function == functions.end()) return "no function";
    const int count = static_cast<int>(arguments.size());
    if (count < function->minArguments || (function->maxArguments >= 0 && count > function->maxArguments)) {
      return "wrong number";
    }
    std::string text = calc::ToUtf8(function->call(arguments).AsText());
    std::replace(text.begin(), text.end(), '\r', '|');
    return text;
  }

  void ExpectAll(const std::vector<Case>& cases) {
    for (const Case& test : cases) EXPECT_EQ(Call(test.call), test.expected) << test.call;
  }

  Solution sales_ = SampleSolution();
  Solution dotted_;
  OpenFiles open_;
  const Solution* current_ = &sales_;
  HostBehaviour behaviour_;
};

TEST_F(DesignFunctionsTest, ListNamesInTheOrderOfTheirKind) {
  ExpectAll({{"TableNames;Sales", "Orders|contacts|SysLog|Remote"},
             {"TableIDs;Sales", "1065089|1065090|1065091|1065092"},
             {"BaseTableNames;Sales", "Orders|Contacts"},
             {"LayoutNames;Sales", "List|-|Orders|Blank"},
             {"ValueListNames;Sales", "Names|YN"},
             {"ValueListItems;;yn", "Yes|No"},
             {"ValueListItems;;Names", ""},
             {"ValueListItems;;Nope", ""},
             {"PrivilegeSetNames;Sales", "[Full Access]|[Read-Only Access]"},
             {"CustomFunctionNames", "Zip|Add"},
             {"WindowNames", "Log|Sales|Sales - 2"},
             {"WindowNames;Sales", "Sales|Sales - 2"},
             {"WindowNames;Log.v2.fmp12", "Log"},
             {"WindowNames;Closed", ""},
             {"DatabaseNames", "Sales|Log.v2"},
             {"ExecuteSQL;SELECT FieldId, FieldName FROM FileMaker_BaseTableFields WHERE FieldName > ?;/;!;Scan",
              "1/Title!3/Total"},
             {"ExecuteSQL;SELECT;x", "wrong number"},
             {"ScriptNames", "wrong number"},
             {"FieldNames;Sales", "wrong number"}});
}

TEST_F(DesignFunctionsTest, FieldsComeFromALayoutsTableBeforeAnOccurrenceOfThatName) {
  ExpectAll({{"FieldNames;;ORDERS", "Name"},
             {"FieldNames;;List", "Name"},
             {"FieldNames;;Contacts", "Name"},
             {"FieldNames;;Remote", ""},
             {"FieldNames;;Blank", ""},
             {"FieldNames;;Zoo", ""},
             {"FieldNames;;-", ""},
             {"FieldNames;;Nope", ""},
             {"FieldType;;Orders::number", "Standard Number Indexed 1"},
             {"FieldType;;Title", "Standard Text Unindexed 3"},
             {"FieldType;;Total", "StoredCalc Number Unindexed 1"},
             {"FieldType;;Now", "UnstoredCalc Time Unindexed 1"},
             {"FieldType;;Latest", "Summary Timestamp Unindexed 1"},
             {"FieldType;;Orders::Due", "Global Date Unindexed 1"},
             {"FieldType;;Orders::Name", ""},
             {"FieldType;;Nope::Title", ""},
             {"FieldComment;;Orders::Number", "unique"},
             {"FieldRepetitions;;List;Name", "1"},
             {"FieldRepetitions;;List;Title", ""}});
  sales_.layouts.clear();
  ExpectAll({{"FieldNames;;ORDERS", "Title|Number|Total|Now|Latest|Due|Scan"},
             {"FieldIDs;;ORDERS", "1|2|3|4|5|6|7"},
             {"FieldRepetitions;;Orders;title", "3"}});
}

TEST_F(DesignFunctionsTest, TheFileIsNamedWithoutRegardToCaseAndWithItsExtensionIfItHoldsAPeriod) {
  ExpectAll({{"ScriptNames;SALES", "Start|-|Reset"},
             {"ScriptNames;sales.FMP12", "Start|-|Reset"},
             {"TableNames;log.v2.fmp12", "Entries"},
             {"TableNames;Log.v2", ""},
             {"TableNames;Closed", ""},
             {"TableNames;Sales.xml", ""},
             {"ValueListItems;;Levels", ""}});
  current_ = &dotted_;
  ExpectAll({{"ValueListItems;;Levels", "High"}});
  current_ = nullptr;
  ExpectAll({{"ValueListItems;;Levels", ""}, {"ExecuteSQL;SELECT * FROM FileMaker_Tables;,;,", "?"}});
}

TEST_F(DesignFunctionsTest, AsInFileMakerSomeListsHaveNoFunction) {
  behaviour_.allDesignFunctions = false;
  ExpectAll({{"PrivilegeSetNames;Sales", "no function"},
             {"CustomFunctionNames;Sales", "no function"},
             {"ScriptNames;Sales", "Start|-|Reset"}});
}

}  // namespace
}  // namespace sim
