// Registration of external functions and calls of them.
#include <FMWrapper/FMXCalcEngine.h>
#include <gtest/gtest.h>

#include "sim/wrapper/Host.h"

namespace {

// The error tells which function was called.
fmx::errcode GiveId(short id, const fmx::ExprEnv&, const fmx::DataVect&, fmx::Data&) { return id; }

struct Registry : testing::Test {
  ~Registry() override { fmhost::DropRegistrations(""); }

  short Register(short id, const char* name, short minimum = 0, short maximum = 0,
                 fmx::ExtPluginType function = GiveId) {
    const fmx::TextUniquePtr text;
    text->Assign(name, fmx::Text::kEncoding_UTF8);
    return fmx::ExprEnv::RegisterExternalFunctionEx(*plugin, id, *text, *text, *text, minimum, maximum, 0xFF00,
                                                    function);
  }

  const fmx::QuadCharUniquePtr plugin{'T', 'e', 's', 't'};
};

TEST_F(Registry, EnforcesArgumentCountsAndPassesErrorsOn) {
  EXPECT_EQ(Register(1, "Test.One", 1, 2), 0);
  EXPECT_EQ(Register(2, "Test.Any", 0, -1), 0);
  const struct {
    const char16_t* name;
    std::size_t arguments;
    short error;
  } cases[] = {
      {u"Test.One", 0, 1201}, {u"test.ONE", 1, 1}, {u"Test.One", 2, 1}, {u"Test.One", 3, 1202}, {u"Test.Any", 20, 2}};
  for (const auto& [name, arguments, error] : cases) {
    calc::Value result;
    EXPECT_EQ(fmhost::Call(*fmhost::FindFunction(name), 7, std::vector<calc::Value>(arguments), result), error);
  }
}

TEST_F(Registry, RefusesWhatIsTakenOrMakesNoSense) {
  EXPECT_EQ(Register(1, "Test.One"), 0);
  EXPECT_EQ(Register(1, "Test.Two"), 1210);
  EXPECT_EQ(Register(2, "TEST.one"), 1210);
  EXPECT_EQ(Register(3, "Test.Three", 2, 1), 1200);
  EXPECT_EQ(Register(3, "Test.Three", 0, 0, nullptr), 1200);
  EXPECT_EQ(fmx::ExprEnv::UnRegisterExternalFunction(*plugin, 3), 1224);
  EXPECT_EQ(fmx::ExprEnv::UnRegisterExternalFunction(*plugin, 1), 0);
  EXPECT_EQ(fmhost::FindFunction(u"Test.One"), nullptr);
}

TEST_F(Registry, ForgetsWhatAPluginLeft) {
  {
    const fmhost::Scope scope("Gone.fmx");
    Register(1, "Test.Gone");
  }
  Register(2, "Test.Stays");
  EXPECT_EQ(fmhost::DropRegistrations("Gone.fmx"), std::vector<std::u16string>{u"Test.Gone"});
  EXPECT_NE(fmhost::FindFunction(u"Test.Stays"), nullptr);
}

}  // namespace
