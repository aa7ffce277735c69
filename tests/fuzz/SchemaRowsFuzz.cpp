// Whatever the host answers to the questions about a schema, the document is JSON with the tables' rows in it.
#include <cstring>
#include <nlohmann/json.hpp>

#include "schema/SchemaBuilder.h"
#include "tests/fuzz/Fuzz.h"
#include "tests/support/ScriptedHost.h"

namespace {

struct FuzzedHost : ScriptedHost {
  std::u16string answer;
  short Evaluate(std::uint64_t, std::u16string_view, calc::Value& result) override {
    result = calc::Value::OfText(answer);
    return 0;
  }
};

}  // namespace

void Try(const std::string& input) {
  FuzzedHost host;
  // From UTF-16, which is what a host may hand over, unpaired surrogates among it.
  host.answer.resize(input.size() / sizeof(char16_t));
  std::memcpy(host.answer.data(), input.data(), host.answer.size() * sizeof(char16_t));
  for (const char* file : {"", "Sales"}) {
    const auto document = nlohmann::json::parse(CallHandler(Do_GetSchema, {file}));
    if (document.empty()) continue;
    for (const auto& table : document.at("tables")) {
      for (const auto& field : table.at("fields")) {
        Check(field.at("name").get<std::string>().find('\r') == std::string::npos);
      }
    }
  }
}
