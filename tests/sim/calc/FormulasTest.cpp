// The functions, the grammar, the operators and the error numbers: formulas in data files, and what they give.
#include <gtest/gtest.h>

#include <fstream>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "sim/calc/TestEnvironment.h"

namespace {

class CalcFormulas : public testing::TestWithParam<const char*> {};

std::string WithControlCharacters(std::string text) {
  for (const auto& [picture, character] : {std::pair{"␍", "\r"}, {"␊", "\n"}, {"␉", "\t"}}) {
    for (auto at = text.find(picture); at != text.npos; at = text.find(picture)) text.replace(at, 3, character);
  }
  return text == "(empty)" ? "" : text;
}

TEST_P(CalcFormulas, GiveWhatFileMakerGives) {
  TestEnvironment environment;
  environment.customFunctions = {
      {u"Twice", {u"n"}, u"n * 2"},
      {u"Limit", {}, u"42"},
      {u"Sum To", {u"n"}, u"If ( n < 1 ; 0 ; n + Sum To ( n - 1 ) )"},
      {u"Shadow", {u"Name"}, u"Name & outer"},
  };
  constexpr std::string_view kIndent = "    ";
  std::vector<std::pair<int, std::string>> formulas;  // with their line numbers
  int checked = 0;
  std::ifstream file(std::string(DATA "/") + GetParam());
  std::string line;
  for (int number = 1; std::getline(file, line); ++number) {
    if (line.empty() || line.starts_with("# ")) continue;
    if (!line.starts_with(kIndent)) {
      formulas.emplace_back(number, line);
      continue;
    }
    for (const auto& [at, formula] : std::exchange(formulas, {})) {
      EXPECT_EQ(environment.Show(WithControlCharacters(formula)), WithControlCharacters(line.substr(kIndent.size())))
          << GetParam() << ':' << at << ": " << formula;
      ++checked;
    }
  }
  EXPECT_GT(checked, 50);
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
