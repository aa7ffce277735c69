// The schema document and the context report: which expressions are evaluated, in which order, and the exact JSON.
#include "schema/ContextDebug.h"
#include "schema/SchemaBuilder.h"
#include "support/Rows.h"
#include "support/ScriptedHost.h"

namespace {

const std::string kQuery =
    "ExecuteSQL(\"SELECT TableName, FieldName, FieldType, FieldClass FROM FileMaker_Fields WHERE TableName NOT LIKE "
    "''Sys%'' ORDER BY TableName, FieldName\"; \"||\"; Char(13))";

/// `row` is the name of a file and what the host answers to expressions. Gives what `make` makes for the file, and what
/// the host is asked.
std::string MadeAndAsked(const std::string& row, const std::function<std::string(const std::string& file)>& make) {
  ScriptedHost host;
  const auto columns = ColumnsOf(row);
  for (std::size_t i = 1; i < columns.size(); ++i) {
    const std::string answer = Filled(columns[i], {{"{query}", kQuery}, {"{bars}", "||"}});
    host.answers[answer.substr(0, answer.find('='))] = answer.substr(answer.find('=') + 1);
  }
  std::string text = make(columns[0]);
  for (const auto& expression : host.asked) text += '\n' + Replaced(expression, kQuery, "{query}");
  return text;
}

TEST(SchemaBuilder, AsksForTablesThenForNamesAndWritesBoth) {
  ExpectRows(DATA "/schemas.txt", [](const auto& row) {
    return MadeAndAsked(row, [](const auto& file) { return CallHandler(Do_GetSchema, {file}); });
  });
  EXPECT_EQ(BuildSchema(nullptr, ""), "{}");
}

TEST(SchemaBuilder, ReadsRowsByTheirFirstThreeSeparators) {
  ScriptedHost host;
  ExpectRows(DATA "/rows.txt", [&](const auto& rows) {
    host.answers = {{"Get(FileName)", "Sales"}, {kQuery, rows}};
    const std::string json = CallHandler(Do_GetSchema);
    const auto start = json.find("\"tables\":") + 9;
    return json.substr(start, json.find(",\"scripts\"") - start);
  });
}

TEST(ContextDebug, ReportsTheContextAndTheScriptsOfTheTarget) {
  ExpectRows(DATA "/contexts.txt", [](const auto& row) {
    return MadeAndAsked(row, [](const auto& target) {
      const fmx::ExprEnvUniquePtr env;
      return BuildContextDebug(env.get(), target, {true, "http://127.0.0.1:8765", "Shop", "Con\"tacts", true});
    });
  });
  EXPECT_EQ(BuildContextDebug(nullptr, "", {}),
            R"({"pluginVersion":"1.6.16","registered":false,"baseUrl":"","registeredFile":"","pendingTarget":"",)"
            R"("pendingSchemaReady":false,"currentFile":"","targetFile":"","windowName":"","account":"",)"
            R"("privilegeSet":"","windowNames":[],"databaseNames":[],"activeFiles":[],"targetScriptNames":[],)"
            R"("livePushVisible":""})");
}

}  // namespace
