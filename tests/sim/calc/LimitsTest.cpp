// Formulas that would exhaust the stack, the memory or the user's patience.
#include <gtest/gtest.h>

#include <string>

#include "sim/calc/TestEnvironment.h"

namespace {

std::string Repeated(std::string_view text, size_t count) {
  std::string result;
  for (size_t i = 0; i < count; ++i) result += text;
  return result;
}

TEST(CalcLimits, EndlessRecursionIsAnError) {
  TestEnvironment environment;
  environment.customFunctions = {
      {u"Tree", {u"n"}, u"IsEmpty ( Tree ( n + 1 ) ) & IsEmpty ( Tree ( n + 2 ) )"},
      {u"Down", {u"n"}, u"If ( n = 0 ; \"bottom\" ; Down ( n - 1 ) )"},
  };
  ExpectAll({{"Tree ( 1 )", "error 1200"},
             {"Down ( 500 )", "bottom"},
             {"SetRecursion ( Down ( 9 ) ; 10 )", "bottom"},
             {"SetRecursion ( Down ( 10 ) ; 10 )", "error 1200"}},
            environment);
}

TEST(CalcLimits, NestingEndsBeforeTheStackAndLongChainsAreNotDeep) {
  TestEnvironment environment;
  for (const char* opening : {"(", "-(", "Abs(", "If(1;", "Let(x=", "Let([x=1;y=", "$a[", "Evaluate(1;["}) {
    EXPECT_EQ(environment.Show(Repeated(opening, 1'000'000)), "error 1200") << opening;
  }
  constexpr size_t kLong = 200'000;
  EXPECT_EQ(environment.Show(Repeated("Abs((", 100) + "7" + Repeated("))", 100)), "7");
  EXPECT_EQ(environment.Show("1" + Repeated(" + 1", kLong)), "200001");
  EXPECT_EQ(environment.Show(Repeated("- ", kLong) + Repeated("/*", kLong) + Repeated("*/", kLong) + "1"), "1");
}

TEST(CalcLimits, HugeResultsAreErrors) {
  ExpectEach("error 1200",
             {"9^9^9^9", "10 ^ 400", "0 ^ -1", "(-8) ^ 0.5", "GetAsNumber ( \"" + Repeated("9", 1'000'000) + "\" )",
              "While ( t = \"x\" ; 1 ; t = t & t ; t )"});
}

}  // namespace
