// Registration of external functions and calls of them.
#include <FMWrapper/FMXCalcEngine.h>
#include <gtest/gtest.h>

#include "sim/calc/Unicode.h"
#include "sim/wrapper/Host.h"

namespace {

fmx::errcode CountArguments(short id, const fmx::ExprEnv& env, const fmx::DataVect& args, fmx::Data& result) {
  fmx::_fmxcpt x;
  fmhost::SetValue(result, calc::Value::OfText(calc::ToUtf16(std::to_string(id) + " in file " +
                                                             std::to_string(fmx::FM_ExprEnv_FileID(&env, x)) + ": " +
                                                             std::to_string(args.Size()))));
  return 0;
}

fmx::errcode Refuse(short, const fmx::ExprEnv&, const fmx::DataVect&, fmx::Data&) { return 959; }

struct Registry : testing::Test {
  ~Registry() override { fmhost::DropRegistrations(""); }

  short Register(short id, const char* name, short minimum, short maximum, fmx::ExtPluginType function) {
    const fmx::QuadCharUniquePtr plugin('T', 'e', 's', 't');
    const fmx::TextUniquePtr text;
    text->Assign(name, fmx::Text::kEncoding_UTF8);
    return fmx::ExprEnv::RegisterExternalFunctionEx(*plugin, id, *text, *text, *text, minimum, maximum, 0xFF00,
                                                    function);
  }
  short Call(const char16_t* name, std::size_t arguments, std::string& result) {
    const std::vector<calc::Value> values(arguments);
    calc::Value value;
    const short error = fmhost::Call(*fmhost::FindFunction(name), 7, values, value);
    result = calc::ToUtf8(value.AsText());
    return error;
  }
};

TEST_F(Registry, EnforcesArgumentCounts) {
  EXPECT_EQ(Register(1, "Test.One", 1, 2, CountArguments), 0);
  EXPECT_EQ(Register(2, "Test.Any", 0, -1, CountArguments), 0);
  EXPECT_EQ(Register(3, "Test.Refuse", 0, 0, Refuse), 0);
  std::string result;
  EXPECT_EQ(Call(u"Test.One", 0, result), 1201);
  EXPECT_EQ(Call(u"test.ONE", 1, result), 0);
  EXPECT_EQ(result, "1 in file 7: 1");
  EXPECT_EQ(Call(u"Test.One", 3, result), 1202);
  EXPECT_EQ(Call(u"Test.Any", 20, result), 0);
  EXPECT_EQ(result, "2 in file 7: 20");
  EXPECT_EQ(Call(u"Test.Refuse", 0, result), 959);
}

TEST_F(Registry, RefusesWhatIsTakenOrMakesNoSense) {
  EXPECT_EQ(Register(1, "Test.One", 0, 0, CountArguments), 0);
  EXPECT_EQ(Register(1, "Test.Two", 0, 0, CountArguments), 1210);
  EXPECT_EQ(Register(2, "TEST.one", 0, 0, CountArguments), 1210);
  EXPECT_EQ(Register(3, "Test.Three", 2, 1, CountArguments), 1200);
  EXPECT_EQ(Register(3, "Test.Three", 0, 0, nullptr), 1200);
  const fmx::QuadCharUniquePtr plugin('T', 'e', 's', 't');
  EXPECT_EQ(fmx::ExprEnv::UnRegisterExternalFunction(*plugin, 3), 1224);
  EXPECT_EQ(fmx::ExprEnv::UnRegisterExternalFunction(*plugin, 1), 0);
  EXPECT_EQ(fmhost::FindFunction(u"Test.One"), nullptr);
}

TEST_F(Registry, ForgetsWhatAPluginLeft) {
  {
    const fmhost::Scope scope("Gone.fmx");
    Register(1, "Test.Gone", 0, 0, CountArguments);
  }
  Register(2, "Test.Stays", 0, 0, CountArguments);
  EXPECT_EQ(fmhost::DropRegistrations("Gone.fmx"), std::vector<std::u16string>{u"Test.Gone"});
  EXPECT_NE(fmhost::FindFunction(u"Test.Stays"), nullptr);
}

}  // namespace
