// Tables in data files: texts and their expected results.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <functional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "support/Placeholders.h"

/// The text that a line of a table stands for.
inline std::string TextOfRow(std::string line) {
  for (const auto& [picture, character] : {std::pair{"␍", "\r"}, {"␊", "\n"}, {"␉", "\t"}}) {
    line = Replaced(std::move(line), picture, character);
  }
  return line == "(empty)" ? "" : line;
}

/// The parts of `row` between its "|"; at least `count`, the last ones empty.
inline std::vector<std::string> ColumnsOf(const std::string& row, std::size_t count = 0) {
  std::vector<std::string> columns;
  for (std::size_t at = 0; at <= row.size(); at += columns.back().size() + 1) {
    columns.push_back(row.substr(at, row.find('|', at) - at));
  }
  columns.resize(std::max(columns.size(), count));
  return columns;
}

/// Checks the table in the file `path`: lines with one text each, and below them, indented, the result that `gives`
/// must return for each of them. "␍", "␊" and "␉" stand for control characters, "(empty)" for no text; "# " begins a
/// comment.
inline void ExpectRows(const std::string& path, const std::function<std::string(const std::string& text)>& gives) {
  constexpr std::string_view kIndent = "    ";
  std::vector<std::pair<int, std::string>> texts;  // with their line numbers
  std::ifstream file(path);
  int number = 0, checked = 0;
  for (std::string line; std::getline(file, line);) {
    ++number;
    if (line.empty() || line.starts_with("# ")) continue;
    if (!line.starts_with(kIndent)) {
      texts.emplace_back(number, line);
      continue;
    }
    for (const auto& [at, text] : std::exchange(texts, {})) {
      EXPECT_EQ(gives(TextOfRow(text)), TextOfRow(line.substr(kIndent.size()))) << path << ':' << at << ": " << text;
      ++checked;
    }
  }
  EXPECT_GT(checked, 0) << path;
  EXPECT_TRUE(texts.empty()) << path << ": the last row has no result";
}
