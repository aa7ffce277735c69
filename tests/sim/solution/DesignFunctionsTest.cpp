// What the design functions list, in which order, and for which file.
#include "solution/DesignFunctions.h"

#include <gtest/gtest.h>

#include "sim/calc/TestEnvironment.h"
#include "sim/solution/SampleSolution.h"

namespace sim {
namespace {

class DesignFunctionsTest : public testing::Test {
 protected:
  DesignFunctionsTest() {
    dotted_.fileName = u"Log.v2.fmp12";
    dotted_.name = u"Log.v2";
    dotted_.valueLists = {{1, u"Levels", u"High"}};
    open_.files = {&sales_, &dotted_};
    open_.windows = {{u"Log", &dotted_}, {u"Sales", &sales_}, {u"Sales - 2", &sales_}};
  }

  template <size_t size>
  void Expect(const FormulaCase (&cases)[size]) {
    TestEnvironment environment;
    environment.hostFunctions = DesignFunctions(open_, current_, behaviour_);
    ExpectAll(cases, environment);
  }

  Solution sales_ = SampleSolution();
  Solution dotted_;
  OpenFiles open_;
  const Solution* current_ = &sales_;
  HostBehaviour behaviour_;
};

TEST_F(DesignFunctionsTest, ListNamesInTheOrderOfTheirKind) {
  Expect({{R"(TableNames ( "Sales" ))", "Orders\rcontacts\rSysLog\rRemote"},
          {R"(TableIDs ( "Sales" ))", "1065089\r1065090\r1065091\r1065092"},
          {R"(BaseTableNames ( "Sales" ))", "Orders\rContacts"},
          {R"(LayoutNames ( "Sales" ))", "List\r-\rOrders\rBlank"},
          {R"(ScriptNames ( "Sales" ))", "Start\r-\rReset"},
          {R"(ValueListNames ( "Sales" ))", "Names\rYN"},
          {R"(ValueListItems ( "" ; "yn" ) & ValueListItems ( "" ; "Names" ) & ValueListItems ( "" ; "Nope" ))",
           "Yes\rNo"},
          {R"(PrivilegeSetNames ( "Sales" ))", "[Full Access]\r[Read-Only Access]"},
          {"CustomFunctionNames", "Zip\rAdd"},
          {"WindowNames", "Log\rSales\rSales - 2"},
          {R"(WindowNames ( "Sales" ) & WindowNames ( "Closed" ))", "Sales\rSales - 2"},
          {"DatabaseNames", "Sales\rLog.v2"},
          {R"(ExecuteSQL ( "SELECT FieldId, FieldName FROM FileMaker_BaseTableFields WHERE FieldName > ?" ;
               "/" ; "!" ; "Scan" ))",
           "1/Title!3/Total"}});
}

TEST_F(DesignFunctionsTest, FieldsComeFromALayoutsTableBeforeAnOccurrenceOfThatName) {
  Expect({{R"(FieldNames ( "" ; "ORDERS" ) & FieldNames ( "" ; "List" ) & FieldNames ( "" ; "Contacts" ))",
           "NameNameName"},
          {R"(FieldNames ( "" ; "Remote" ) & FieldNames ( "" ; "Blank" ) & FieldNames ( "" ; "Zoo" ))", ""},
          {R"(FieldType ( "" ; "Orders::number" ))", "Standard Number Indexed 1"},
          {R"(FieldType ( "" ; "Title" ) & FieldType ( "" ; "Total" ))",
           "Standard Text Unindexed 3StoredCalc Number Unindexed 1"},
          {R"(FieldType ( "" ; "Now" ) & FieldType ( "" ; "Latest" ))",
           "UnstoredCalc Time Unindexed 1Summary Timestamp Unindexed 1"},
          {R"(FieldType ( "" ; "Orders::Due" ))", "Global Date Unindexed 1"},
          {R"(FieldType ( "" ; "Orders::Name" ) & FieldType ( "" ; "Nope::Title" ))", ""},
          {R"(FieldComment ( "" ; "Orders::Number" ))", "größer <\r😀"},
          {R"(FieldRepetitions ( "" ; "List" ; "Name" ) & FieldRepetitions ( "" ; "List" ; "Title" ))", "1"}});
  sales_.layouts.clear();
  Expect({{R"(FieldNames ( "" ; "ORDERS" ))", "Title\rNumber\rTotal\rNow\rLatest\rDue\rScan"},
          {R"(FieldIDs ( "" ; "ORDERS" ) & FieldRepetitions ( "" ; "Orders" ; "title" ))", "1\r2\r3\r4\r5\r6\r73"}});
}

TEST_F(DesignFunctionsTest, TheFileIsNamedWithoutRegardToCaseAndWithItsExtensionIfItHoldsAPeriod) {
  Expect({{R"(BaseTableNames ( "SALES" ) & BaseTableNames ( "sales.fmp12" ))", "Orders\rContactsOrders\rContacts"},
          {R"(ValueListNames ( "log.v2.fmp12" ) & ValueListNames ( "Log.v2" ) & ValueListNames ( "Sales.xml" ))",
           "Levels"},
          {R"(ValueListItems ( "" ; "Levels" ))", ""}});
  current_ = nullptr;
  Expect({{R"(ValueListItems ( "" ; "Levels" ) & ExecuteSQL ( "SELECT * FROM FileMaker_Tables" ; "" ; "" ))", "?"}});
}

}  // namespace
}  // namespace sim
