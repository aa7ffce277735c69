// Whatever the host answers, the tables of the schema document are those of the query's rows or, without any, those of
// the lists of names.
#include <algorithm>
#include <cstring>
#include <nlohmann/json.hpp>
#include <sstream>
#include <vector>

#include "fuzz/Fuzz.h"
#include "schema/SchemaBuilder.h"
#include "support/ScriptedHost.h"

namespace {

using Json = nlohmann::ordered_json;

struct FuzzedHost : ScriptedHost {
  std::u16string answer;
  short Evaluate(std::uint64_t, std::u16string_view, calc::Value& result) override {
    result = calc::Value::OfText(answer);
    return 0;
  }
};

std::vector<std::string> LinesOf(std::string text) {
  std::ranges::replace(text, '\r', '\n');
  std::istringstream stream(text);
  std::vector<std::string> lines;
  for (std::string line; std::getline(stream, line);) {
    if (!line.empty()) lines.push_back(line);
  }
  return lines;
}

Json Field(const std::string& name, const std::string& type, const std::string& fieldClass) {
  return {{"name", name}, {"type", type}, {"class", fieldClass}};
}

/// Removes the text before the next separator, or all, from `row`, and returns it.
std::string NextColumn(std::string& row) {
  const std::size_t end = std::min(row.find("||"), row.size());
  const std::string column = row.substr(0, end);
  row.erase(0, end + 2);
  return column;
}

/// Whether FileMaker reads `name` between quotes as one text literal without a quote.
bool IsLiteral(const std::string& name) {
  std::size_t at = 0;
  while (at < name.size() && name[at] != '"') at += name[at] == '\\' ? 2 : 1;
  return at == name.size() && name.find('"') == name.npos;
}

Json TablesOf(const std::vector<std::string>& lines) {
  Json fields = Json::object();  // by table
  for (std::string row : lines) {
    if (const auto first = row.find("||"); first == row.npos || row.find("||", first + 2) == row.npos) continue;
    const std::string table = NextColumn(row), name = NextColumn(row), type = NextColumn(row);
    fields[table].push_back(Field(name, type, row));
  }
  Json tables = Json::array();
  for (const auto& [table, list] : fields.items()) tables.push_back({{"name", table}, {"fields", list}});
  if (!tables.empty()) return tables;
  for (const auto& table : lines) {
    Json list = Json::array();
    for (auto times = IsLiteral(table) ? std::ranges::count(lines, table) : 0; times > 0; --times) {
      for (const auto& name : lines) list.push_back(Field(name, "", ""));
    }
    tables.push_back({{"name", table}, {"fields", list}});
  }
  return tables;
}

}  // namespace

void Try(const std::string& input) {
  FuzzedHost host;
  // As UTF-16, like a host's texts, including unpaired surrogates.
  host.answer.resize(input.size() / sizeof(char16_t));
  std::memcpy(host.answer.data(), input.data(), host.answer.size() * sizeof(char16_t));
  const auto lines = LinesOf(calc::ToUtf8(host.answer.substr(0, host.answer.find(u'\0'))));
  const auto document = Json::parse(CallHandler(Do_GetSchema, {}));
  Check(lines.empty() ? document.empty() : document.at("tables") == TablesOf(lines));
  Check(nlohmann::json::accept(CallHandler(Do_GetSchema, {"Sales"})));
}
