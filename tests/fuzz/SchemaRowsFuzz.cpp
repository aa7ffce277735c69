// Whatever the host answers to the questions about a schema, the document is JSON with the tables' rows in it.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <nlohmann/json.hpp>
#include <string>

#include "schema/SchemaBuilder.h"
#include "tests/support/ScriptedHost.h"

namespace {

class FuzzedHost : public ScriptedHost {
 public:
  std::u16string answer;
  short Evaluate(std::uint64_t, std::u16string_view, calc::Value& result) override {
    result = calc::Value::OfText(answer);
    return 0;
  }
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  FuzzedHost host;
  // From UTF-16, which is what a host may hand over, unpaired surrogates among it.
  host.answer.resize(size / sizeof(char16_t));
  std::memcpy(host.answer.data(), data, host.answer.size() * sizeof(char16_t));
  for (const char* file : {"", "Sales"}) {
    const auto document = nlohmann::json::parse(CallHandler(Do_GetSchema, {file}));
    if (document.empty()) continue;
    for (const auto& table : document.at("tables")) {
      for (const auto& field : table.at("fields")) {
        if (field.at("name").get<std::string>().find('\r') != std::string::npos) std::abort();
      }
    }
  }
  return 0;
}
