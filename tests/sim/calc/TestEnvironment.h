// An environment for calculations in tests: a few fields and functions, all in memory.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <initializer_list>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "calc/Engine.h"
#include "calc/Unicode.h"

class TestEnvironment : public calc::Environment {
 public:
  std::optional<calc::Value> Get(std::u16string_view parameter) override {
    if (!calc::EqualIgnoringCase(parameter, u"FileName")) return std::nullopt;
    return calc::Value::OfText(u"Orders");
  }

  std::optional<calc::Value> Field(std::u16string_view occurrence, std::u16string_view field, int repetition) override {
    const auto found = fields.find(std::u16string(occurrence) + u"::" + std::u16string(field));
    if (found == fields.end() || repetition > static_cast<int>(found->second.size())) return std::nullopt;
    return calc::Value::OfText(found->second[static_cast<size_t>(repetition - 1)]);
  }

  std::u16string FieldName(std::u16string_view occurrence, std::u16string_view field) override {
    const auto name = std::u16string(occurrence) + u"::" + std::u16string(field);
    return fields.contains(name) ? name : u"";
  }

  const calc::HostFunction* FindHostFunction(std::u16string_view name) override { return Find(hostFunctions, name); }
  const calc::CustomFunction* FindCustomFunction(std::u16string_view name) override {
    return Find(customFunctions, name);
  }
  calc::Variables& Locals() override { return locals; }
  calc::Variables& Globals() override { return globals; }

  /// The text of the value of `formula`, or "error N" if it does not parse or gives an error value.
  std::string Show(std::string_view formula) {
    calc::Value result;
    const int error = calc::Evaluate(calc::ToUtf16(formula), *this, result);
    return error != 0 ? "error " + std::to_string(error) : calc::ToUtf8(result.AsText());
  }

  std::map<std::u16string, std::vector<std::u16string>> fields = {
      {u"::Name", {u"Ann"}}, {u"Orders::Line Total", {u"12.5", u"7"}}, {u"::a-b", {u"minus"}}};
  std::vector<calc::HostFunction> hostFunctions;
  std::vector<calc::CustomFunction> customFunctions;
  calc::Variables locals;
  calc::Variables globals;

 private:
  template <typename Function>
  static const Function* Find(const std::vector<Function>& functions, std::u16string_view name) {
    const auto found = std::find_if(functions.begin(), functions.end(), [name](const Function& function) {
      return calc::EqualIgnoringCase(function.name, name);
    });
    return found == functions.end() ? nullptr : &*found;
  }
};

/// A formula and the result of TestEnvironment::Show.
struct FormulaCase {
  const char* formula;
  const char* shown;
};

template <size_t size>
void ExpectAll(const FormulaCase (&cases)[size], TestEnvironment environment = {}) {
  for (const FormulaCase& test : cases) EXPECT_EQ(environment.Show(test.formula), test.shown) << test.formula;
}

/// Checks that all formulas show the same.
inline void ExpectEach(const char* shown, std::initializer_list<std::string_view> formulas) {
  TestEnvironment environment;
  for (const std::string_view formula : formulas) {
    EXPECT_EQ(environment.Show(formula), shown) << formula.substr(0, 100);
  }
}
