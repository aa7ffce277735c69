// Whatever the host answers to the questions about a schema, the document is JSON with a list of tables.
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
    Check(document.empty() || document.at("tables").is_array());
  }
}
