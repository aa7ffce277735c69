// What the design functions list, in which order and for which file.
#include "solution/DesignFunctions.h"

#include <gtest/gtest.h>

#include "sim/calc/TestEnvironment.h"
#include "sim/solution/SampleSolution.h"
#include "support/Rows.h"

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

TEST_F(DesignFunctionsTest, ListTheContentOfTheFile) {
  TestEnvironment environment;
  environment.hostFunctions = DesignFunctions(open_, current_, behaviour_);
  ExpectRows(SALES_EXPORTS "/design-functions.txt", [&](const auto& formula) { return environment.Show(formula); });
}

TEST_F(DesignFunctionsTest, FindFieldsWithoutLayoutsAndNothingWithoutAFile) {
  sales_.layouts.clear();
  Expect({{R"(FieldNames ( "" ; "ORDERS" ))", "Title\rNumber\rTotal\rNow\rLatest\rDue\rScan"},
          {R"(FieldIDs ( "" ; "ORDERS" ) & FieldRepetitions ( "" ; "Orders" ; "title" ))", "1\r2\r3\r4\r5\r6\r73"}});
  current_ = nullptr;
  Expect({{R"(ValueListItems ( "" ; "Levels" ) & ExecuteSQL ( "SELECT * FROM FileMaker_Tables" ; "" ; "" ))", "?"}});
}

}  // namespace
}  // namespace sim
