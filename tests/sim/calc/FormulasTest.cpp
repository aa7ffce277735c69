// The functions, the grammar, the operators and the error numbers: formulas in data files, with their results.
#include <gtest/gtest.h>

#include <string>

#include "sim/calc/TestEnvironment.h"
#include "support/Rows.h"

namespace {

class CalcFormulas : public testing::TestWithParam<const char*> {};

TEST_P(CalcFormulas, GiveTheResultsOfFileMaker) {
  TestEnvironment environment;
  environment.customFunctions = {
      {u"Twice", {u"n"}, u"n * 2"},
      {u"Limit", {}, u"42"},
      {u"Sum To", {u"n"}, u"If ( n < 1 ; 0 ; n + Sum To ( n - 1 ) )"},
      {u"Shadow", {u"Name"}, u"Name & outer"},
  };
  ExpectRows(std::string(DATA "/") + GetParam(), [&](const auto& formula) { return environment.Show(formula); });
}

INSTANTIATE_TEST_SUITE_P(, CalcFormulas, testing::Values("functions.txt", "language.txt"));

TEST(CalcText, IsNormalisedForComparisonAndHasOtherSpaces) {
  ExpectAll({
      {"Exact ( \"a\" ; \"A\" ) & Exact ( \"a\" ; \"a\" ) & Exact ( \"é\" ; \"e\u0301\" )", "010"},
      {"\"é\" = \"e\u0301\"", "1"},
      {"1\u00A0+\u00A0Orders::Line Total", "13.5"},
  });
}

}  // namespace
