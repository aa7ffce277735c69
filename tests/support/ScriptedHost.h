// A host with given results of evaluations, which it records in order; and calls of external functions, as FileMaker
// makes them.
#pragma once

#include <gtest/gtest.h>

#include <map>
#include <string>
#include <vector>

#include "calc/Unicode.h"
#include "support/Rows.h"
#include "wrapper/Host.h"

class ScriptedHost : public wrapper::Host {
 public:
  ScriptedHost() { wrapper::SetHost(this); }
  ~ScriptedHost() override {
    wrapper::SetHost(nullptr);
    EXPECT_EQ(wrapper::LiveObjects(), std::vector<std::string>()) << "host objects were left alive";
    EXPECT_EQ(wrapper::Violations(), std::vector<std::string>());
  }

  /// The results by expression; one without an answer fails with error 1200.
  std::map<std::string, std::string> answers;
  std::map<std::string, short> errors;
  /// Every expression asked for, in order.
  std::vector<std::string> asked;

  short Evaluate(std::uint64_t, std::u16string_view expression, calc::Value& result) override {
    const std::string text = calc::ToUtf8(expression);
    asked.push_back(text);
    if (const auto error = errors.find(text); error != errors.end()) return error->second;
    const auto answer = answers.find(text);
    if (answer == answers.end()) return 1200;
    result = calc::Value::OfText(calc::ToUtf16(answer->second));
    return 0;
  }
};

/// Calls a function handler with text arguments (UTF-8) and returns its result text. The handler must return 0.
inline std::string CallHandler(fmx::ExtPluginType handler, const std::vector<std::string>& arguments = {}) {
  wrapper::Registration function;
  function.maxArguments = -1;
  function.function = handler;
  std::vector<calc::Value> values;
  for (const auto& argument : arguments) values.push_back(calc::Value::OfText(calc::ToUtf16(argument)));
  calc::Value result;
  EXPECT_EQ(wrapper::Call(function, 1, values, result), 0);
  return calc::ToUtf8(result.AsText());
}

/// Calls the function named first in `row` with the arguments that follow, separated by "|".
inline std::string CallRow(const std::map<std::string, fmx::ExtPluginType>& functions, const std::string& row) {
  const std::vector<std::string> words = ColumnsOf(row);
  return CallHandler(functions.at(words.front()), {words.begin() + 1, words.end()});
}
