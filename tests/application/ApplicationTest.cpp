// The application around the files: contexts, Get functions, and what plug-ins ask of it.
#include "sim/application/Application.h"

#include <gtest/gtest.h>

#include "sim/calc/Unicode.h"
#include "tests/application/SmallExport.h"

namespace {

class ApplicationTest : public SmallExports {
 protected:
  void Open(const SmallFile& file) {
    std::string error;
    ASSERT_TRUE(application.Open(Write(file), error)) << error;
  }
  // The text of a value, or the error in brackets.
  std::string Eval(const std::string& formula) {
    calc::Value value;
    const int error = application.Evaluate(calc::ToUtf16(formula), value);
    return error == 0 ? calc::ToUtf8(value.AsText()) : "[" + std::to_string(error) + "]";
  }

  sim::Application application;
};

TEST_F(ApplicationTest, AnswersFromTheFrontFile) {
  EXPECT_EQ(Eval("Get ( FileName ) & DatabaseNames & WindowNames & TableNames ( \"\" )"), "");
  Open({.name = "One"});
  Open({.name = "Two", .privilegeSet = "4"});
  const std::pair<const char*, const char*> inTwo[] = {
      {"Get ( FileName ) & Get ( WindowName )", "TwoTwo"},
      {"WindowNames & DatabaseNames", "Two\rOneOne\rTwo"},
      {"Get ( AccountName ) & Get ( PrivilegeSetName ) & Get ( CurrentPrivilegeSetName )", "MeClerkClerk"},
      {"Get ( CurrentExtendedPrivileges )", ""},
      {"Get ( LayoutName ) & Get ( LayoutTableName ) & Get ( LayoutNumber )", "ListOrders2"},
      {"IsEmpty ( Orders::Total ) & IsEmpty ( Total )", "11"},
      {"Orders::Nothing", "[102]"},
      {"Get ( Nothing )", "[1215]"},
      {"Get ( ApplicationVersion )", "Pro 22.0.1"},
      {"Exact ( Get ( PersistentID ) ; Get ( PersistentID ) ) and Length ( Get ( PersistentID ) ) = 32", "1"},
      {"Get ( UUID ) ≠ Get ( UUID ) and Length ( Get ( UUID ) ) = 36", "1"},
      {"Abs ( Get ( CurrentTimestamp ) - Get ( CurrentTimeUTCMilliseconds ) / 1000 ) < 60 * 60 * 15", "1"},
  };
  for (const auto& [formula, text] : inTwo) EXPECT_EQ(Eval(formula), text) << formula;
  EXPECT_EQ(Eval("Get ( FilePath )"), "file:/Macintosh HD" + folder_ + "/Two.fmp12");

  std::string error;
  EXPECT_TRUE(application.Activate(u"one.FMP12", error));
  EXPECT_EQ(Eval("Get ( FileName ) & WindowNames & Get ( CurrentExtendedPrivileges )"), "OneOne\rTwofmplugin");
  EXPECT_FALSE(application.Activate(u"Three", error));
  EXPECT_FALSE(application.Open(folder_ + "/Two.xml", error));
  EXPECT_EQ(error, folder_ + "/Two.xml: a file named \"Two\" is already open");
}

TEST_F(ApplicationTest, KeepsVariablesPerFile) {
  EXPECT_EQ(Eval("Let ( [ $a = 3 ; $$a = 4 ] ; $a & $$a )"), "34") << "without a file too";
  Open({.name = "One"});
  EXPECT_EQ(Eval("Let ( [ $a = 1 ; $$b = 2 ] ; $a + $$b )"), "3");
  Open({.name = "Two"});
  EXPECT_EQ(Eval("$a & $$b"), "");
  std::string error;
  application.Activate(u"One", error);
  EXPECT_EQ(Eval("$a & $$b"), "12");
}

TEST_F(ApplicationTest, LetsPluginsStartScriptsOnlyWhereTheFileAllowsIt) {
  Open({.name = "Open"});
  Open({.name = "Closed", .privilege = "fmapp"});
  std::string error;
  ASSERT_TRUE(application.LoadPlugin(CARELESS_PLUGIN, error)) << error;
  EXPECT_FALSE(application.LoadPlugin(CARELESS_PLUGIN, error)) << "the same plug-in twice";
  EXPECT_EQ(Eval("Careless.StartScript ( \"Nowhere\" ; \"Go\" )"), "100");
  EXPECT_EQ(Eval("Careless.StartScript ( \"Closed\" ; \"Go\" )"), "825");
  EXPECT_EQ(Eval("Careless.StartScript ( \"Open\" ; \"Missing\" )"), "1825");
  EXPECT_FALSE(application.TakeQueuedScript());
  EXPECT_EQ(Eval("Careless.StartScript ( \"open.fmp12\" ; \"go\" )"), "0");
  const auto queued = application.TakeQueuedScript();
  ASSERT_TRUE(queued);
  EXPECT_EQ(queued->script->name, u"Go");
  EXPECT_EQ(Eval("Careless.CurrentFile"), "Closed") << "the current environment is the front file's";
  EXPECT_EQ(Eval("Careless.StartScript ( \"Open\" )"), "[1201]");
  EXPECT_EQ(Eval("Careless.CurrentFile ( 1 )"), "[1202]");
  application.Quit();
  fmhost::ForgetViolations();
}

TEST_F(ApplicationTest, NamesWhatAPluginLeavesBehind) {
  std::string error;
  ASSERT_TRUE(application.LoadPlugin(CARELESS_PLUGIN, error)) << error;
  Eval("Careless.Leak & Careless.DeleteTwice");
  const std::vector<std::string> faults = {"Careless.fmx: left \"Careless.Leak\" registered",
                                           "Careless.fmx: 2 Text objects never deleted",
                                           "Careless.fmx: FM_Data_Delete: not a live Data (deleted twice?)"};
  EXPECT_EQ(application.Quit(), faults);
  fmhost::ForgetViolations();
}

}  // namespace
