// The conversions between host values and UTF-8 strings.
#include "core/HostText.h"

#include <gtest/gtest.h>

#include <tuple>

#include "support/ScriptedHost.h"

namespace {

using namespace std::string_literals;

fmx::errcode Echo(short, const fmx::ExprEnv&, const fmx::DataVect& args, fmx::Data& result) {
  SetTextResult(GetTextArg(args, 0), result);
  return 0;
}

TEST(GetTextArg, PassesAnyTextUpToItsFirstZeroCharacter) {
  const ScriptedHost host;
  const std::string cases[] = {"", "plain", "\r\n\t", "Größe", "顧客", "🎻 e\xCC\x81", std::string(1 << 20, 'x') + "ß"};
  for (const auto& text : cases) EXPECT_EQ(CallHandler(Echo, {text}), text);
  EXPECT_EQ(CallHandler(Echo, {"before\0after"s}), "before");
  EXPECT_EQ(CallHandler(Echo), "") << "an argument that was not given";
}

TEST(EvalCalc, GivesTheTextOfTheResultOrNothing) {
  ScriptedHost host;
  host.answers = {{"\"Größe\"", "Größe"}, {"Empty", ""}, {"Broken", "text that an error makes void"}};
  host.errors = {{"Broken", 1204}};
  const fmx::ExprEnvUniquePtr env;
  EXPECT_EQ(EvalCalc(env.get(), "\"Größe\""), "Größe");
  EXPECT_EQ(EvalCalc(env.get(), "Empty"), "");
  EXPECT_EQ(EvalCalc(env.get(), "Broken"), "");
  EXPECT_EQ(EvalCalc(nullptr, "\"Größe\""), "");
  EXPECT_EQ(EvalCalc(env.get(), "Get(FileName) // \xC3"), "") << "not UTF-8";
  EXPECT_EQ(host.asked, (std::vector<std::string>{"\"Größe\"", "Empty", "Broken"}));
}

TEST(CopyUTF8ToUnichar16, CutsToTheCapacityAndAlwaysTerminates) {
  const ScriptedHost host;
  const std::tuple<const char*, unsigned int, std::u16string> cases[] = {
      {"Varnix", 7, u"Varnix"}, {"Varnix", 6, u"Varni"}, {"Varnix", 1, u""}, {"", 5, u""}, {"ä€🎻", 5, u"ä€🎻"}};
  for (const auto& [text, capacity, expected] : cases) {
    std::u16string buffer(40, u'~');
    CopyUTF8ToUnichar16(text, capacity, reinterpret_cast<unsigned short*>(buffer.data()));
    EXPECT_EQ(buffer.substr(0, expected.size() + 1), expected + u'\0') << text;
    EXPECT_EQ(buffer[capacity], u'~') << text << " was written beyond its capacity";
  }
}

}  // namespace
