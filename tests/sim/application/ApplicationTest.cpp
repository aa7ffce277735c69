// The application around the files: contexts, Get functions, and requests from plug-ins.
#include "application/Application.h"

#include <FMWrapper/FMXData.h>
#include <FMWrapper/FMXText.h>
#include <gtest/gtest.h>

#include "calc/Unicode.h"
#include "sim/application/SmallExport.h"

namespace {

class ApplicationTest : public SmallExports {
 protected:
  void Open(const SmallFile& file) {
    std::string error;
    ASSERT_TRUE(application.files().Open(Write(file), error)) << error;
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
  EXPECT_TRUE(application.files().Activate(u"one.FMP12", error));
  EXPECT_EQ(Eval("Get ( FileName ) & WindowNames & Get ( CurrentExtendedPrivileges )"), "OneOne\rTwofmplugin");
  EXPECT_FALSE(application.files().Activate(u"Three", error));
  EXPECT_FALSE(application.files().Open(folder_ + "/Two.xml", error));
  EXPECT_EQ(error, folder_ + "/Two.xml: a file named \"Two\" is already open");
}

TEST_F(ApplicationTest, LetsPluginsStartScriptsOnlyWhereTheFileAllowsIt) {
  Open({.name = "Open"});
  Open({.name = "Closed", .privilege = "fmapp"});
  std::string error;
  ASSERT_TRUE(application.plugins().Load(CARELESS_PLUGIN, error)) << error;
  EXPECT_FALSE(application.plugins().Load(CARELESS_PLUGIN, error)) << "the same plug-in twice";
  EXPECT_EQ(Eval("Careless.StartScript ( \"Nowhere\" ; \"Go\" )"), "100");
  EXPECT_EQ(Eval("Careless.StartScript ( \"Closed\" ; \"Go\" )"), "825");
  EXPECT_EQ(Eval("Careless.StartScript ( \"Open\" ; \"Missing\" )"), "1825");
  EXPECT_FALSE(application.TakeQueuedScript());
  EXPECT_EQ(Eval("Careless.StartScript ( \"open.fmp12\" ; \"go\" )"), "0");
  const auto queued = application.TakeQueuedScript();
  ASSERT_TRUE(queued);
  EXPECT_EQ(queued->script->name, u"Go");
  EXPECT_EQ(Eval("Careless.CurrentFile"), "Closed") << "the current environment is the front file's";
  application.plugins().Quit();
  wrapper::ForgetViolations();
}

std::string Utf8(const fmx::Text& text) { return calc::ToUtf8(wrapper::TextOf(text)); }

TEST_F(ApplicationTest, AnswersTheQueriesOfPlugins) {
  Open({.name = "One"});
  fmx::_fmxcpt x;
  const fmx::ExprEnvUniquePtr env;
  wrapper::Bind(*env, application.files().active()->id);
  const fmx::TextUniquePtr sql, file, nowhere;
  nowhere->Assign("Nowhere", fmx::Text::kEncoding_UTF8);
  const fmx::DataVectUniquePtr arguments;
  const fmx::DataUniquePtr data;
  const std::unique_ptr<fmx::RowVect> rows(fmx::FM_RowVect_Constructor1(x));
  const auto query = [&](const char* text, const fmx::Text& of) {
    sql->Assign(text, fmx::Text::kEncoding_UTF8);
    EXPECT_EQ(fmx::FM_ExprEnv_ExecuteFileSQL(env.get(), *sql, of, *arguments, *rows, x),
              fmx::FM_ExprEnv_ExecuteFileSQLTextResult(env.get(), *sql, of, *arguments, *data, '|', '/', x));
    return fmx::FM_ExprEnv_ExecuteFileSQL(env.get(), *sql, of, *arguments, *rows, x);
  };
  EXPECT_EQ(query("SELECT TableName, BaseTableName FROM FileMaker_Tables", *file), 0);
  EXPECT_EQ(Utf8(data->GetAsText()), "Orders|Orders");
  ASSERT_EQ(fmx::FM_RowVect_Size(rows.get(), x), 1u);
  EXPECT_EQ(Utf8(fmx::FM_RowVect_At(rows.get(), 0, x)->AtAsText(1)), "Orders");
  EXPECT_EQ(query("SELECT", *file), 8310);
  EXPECT_EQ(Utf8(data->GetAsText()), "?");
  EXPECT_TRUE(fmx::FM_RowVect_IsEmpty(rows.get(), x));
  EXPECT_EQ(query("SELECT TableName FROM FileMaker_Tables", *nowhere), 100);
}

TEST_F(ApplicationTest, ConvertsThePathsOfPlugins) {
  Open({.name = "One"});
  struct Case {
    const char* fileMaker;
    int format;
    std::string path;  // empty: refused
    const char* back;  // what the path converts to; nullptr: refused
  };
  const Case cases[] = {
      {"file:/Macintosh HD/a b/ü%", wrapper::kPosixPath, "/a b/ü%", "file:/Macintosh HD/a b/ü%"},
      {"filemac:/Macintosh HD/a b/ü%", wrapper::kUrlPath, "file:///a%20b/%C3%BC%25", "file:/Macintosh HD/a b/ü%"},
      {"file:a.txt", wrapper::kPosixPath, folder_ + "/a.txt", "file:/Macintosh HD"},
      {"file:/Macintosh HD/a", wrapper::kWindowsPath, "", nullptr},
  };
  for (const auto& c : cases) {
    std::u16string path, back;
    application.ConvertFromFileMakerPath(1, calc::ToUtf16(c.fileMaker), c.format, path);
    EXPECT_EQ(calc::ToUtf8(path), c.path) << c.fileMaker;
    EXPECT_EQ(application.ConvertToFileMakerPath(1, path, c.format, back), c.back == nullptr ? 1200 : 0);
    EXPECT_TRUE(calc::ToUtf8(back).starts_with(c.back == nullptr ? "" : c.back)) << calc::ToUtf8(back);
  }
}

}  // namespace
