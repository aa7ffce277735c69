// The application around the files: contexts, Get functions, and what plug-ins ask of it.
#include "application/Application.h"

#include <gtest/gtest.h>

#include "calc/Unicode.h"
#include "sim/application/SmallExport.h"

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
  EXPECT_EQ(Eval("Let ( [ $a = 1 ; $$b = 2 ] ; $a & $$b )"), "12");
  Open({.name = "Two", .privilegeSet = "4"});
  const std::pair<const char*, const char*> inTwo[] = {
      {"Get ( FileName ) & Get ( WindowName )", "TwoTwo"},
      {"$a & $$b", ""},
      {"WindowNames & DatabaseNames", "Two\rOneOne\rTwo"},
      {"Get ( AccountName ) & Get ( PrivilegeSetName ) & Get ( CurrentPrivilegeSetName )", "MeClerkClerk"},
      {"Get ( CurrentExtendedPrivileges )", ""},
      {"Get ( LayoutName ) & Get ( LayoutTableName ) & Get ( LayoutNumber )", "ListOrders2"},
      {"Get ( ApplicationVersion )", "Pro 22.0.1"},
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
  application.Quit();
  fmhost::ForgetViolations();
}

}  // namespace
