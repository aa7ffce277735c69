#include "schema/SchemaBuilder.h"

#include <deque>
#include <initializer_list>
#include <map>
#include <string_view>
#include <utility>
#include <vector>

#include "core/HostText.h"
#include "core/Lines.h"
#include "net/JsonWriter.h"

namespace {

constexpr char kFieldQuery[] =
    "ExecuteSQL(\"SELECT TableName, FieldName, FieldType, FieldClass FROM FileMaker_Fields "
    "WHERE TableName NOT LIKE ''Sys%'' ORDER BY TableName, FieldName\"; \"||\"; Char(13))";
constexpr std::string_view kColumnSeparator = "||";
constexpr char kCurrentFile[] = "Get(FileName)";

// Views into the evaluations' results, which Tables keeps: a file may have a hundred thousand fields.
struct FieldInfo {
  std::string_view name;
  std::string_view type;
  std::string_view fieldClass;
};

struct Tables {
  std::deque<std::string> results;
  std::vector<std::string_view> order;
  std::map<std::string_view, std::vector<FieldInfo>> fields;
};

// Whether the text literal "<name>" ends where it should. A double quote inside the name ends it early, and a backslash
// that is not itself escaped takes the closing quote into the literal; what follows would then be evaluated as code.
bool FitsLiteral(std::string_view name) {
  const std::size_t trailingBackslashes = name.size() - (name.find_last_not_of('\\') + 1);
  return name.find('"') == name.npos && trailingBackslashes % 2 == 0;
}

// `name` verbatim as a text literal, or "" when it does not fit into one.
std::string Quoted(std::string_view name) { return FitsLiteral(name) ? '"' + std::string(name) + '"' : ""; }

std::string Eval(const fmx::ExprEnv* env, const std::string& expression) { return EvalCalc(env, expression.c_str()); }

// A call without a usable argument is not evaluated; its result is empty, like that of a failed evaluation.
std::string Call(const fmx::ExprEnv* env, const char* function, std::initializer_list<std::string_view> arguments) {
  std::string expression = function;
  const char* before = "(";
  for (const auto argument : arguments) {
    if (argument.empty()) return {};
    expression.append(before).append(argument);
    before = "; ";
  }
  return Eval(env, expression + ')');
}

const std::string& Keep(Tables& tables, std::string result) { return tables.results.emplace_back(std::move(result)); }

void AddQueryRows(const std::string& rows, Tables& tables) {
  std::vector<FieldInfo>* fields = nullptr;
  std::string_view fieldsOf;
  for (const auto row : NonEmptyLines(rows)) {
    const std::size_t afterTable = row.find(kColumnSeparator);
    if (afterTable == row.npos) continue;
    const std::size_t name = afterTable + kColumnSeparator.size();
    const std::size_t afterName = row.find(kColumnSeparator, name);
    if (afterName == row.npos) continue;
    const std::size_t type = afterName + kColumnSeparator.size();
    const std::size_t afterType = row.find(kColumnSeparator, type);

    const auto table = row.substr(0, afterTable);
    if (fields == nullptr || table != fieldsOf) {  // the rows of a table are mostly adjacent
      auto [entry, isNew] = tables.fields.try_emplace(table);
      if (isNew) tables.order.push_back(table);
      fields = &entry->second;
      fieldsOf = table;
    }
    const bool hasClass = afterType != row.npos;
    fields->push_back({row.substr(name, afterName - name), row.substr(type, afterType - type),
                       hasClass ? row.substr(afterType + kColumnSeparator.size()) : std::string_view()});
  }
}

void AddNamedTables(const fmx::ExprEnv* env, const std::string& fileArgument, Tables& tables) {
  for (const auto table : NonEmptyLines(Keep(tables, Call(env, "TableNames", {fileArgument})))) {
    tables.order.push_back(table);
    auto& fields = tables.fields[table];
    for (const auto field : NonEmptyLines(Keep(tables, Call(env, "FieldNames", {fileArgument, Quoted(table)})))) {
      fields.push_back({field, {}, {}});
    }
  }
}

// Roughly the size of the tables' JSON, so that its string need not grow by copying.
std::size_t JsonSize(const Tables& tables) {
  constexpr std::size_t kTablePunctuation = 25, kFieldPunctuation = 35;
  std::size_t size = 0;
  for (const auto& result : tables.results) size += result.size();
  for (const auto& [table, fields] : tables.fields) size += kTablePunctuation + fields.size() * kFieldPunctuation;
  return size;
}

void WriteTables(JsonWriter& json, const Tables& tables) {
  json.BeginArray("tables");
  for (const auto& table : tables.order) {
    json.BeginObject().Text("name", table).BeginArray("fields");
    for (const auto& field : tables.fields.at(table)) {
      json.BeginObject();
      json.Text("name", field.name).Text("type", field.type).Text("class", field.fieldClass);
      json.EndObject();
    }
    json.EndArray().EndObject();
  }
  json.EndArray();
}

std::string CustomFunctionNames(const fmx::ExprEnv* env, const std::string& quotedTarget) {
  std::string names = Call(env, "CustomFunctionNames", {quotedTarget});
  if (names.empty() || names == "?") names = Eval(env, "CustomFunctionNames()");
  return names;
}

}  // namespace

std::string BuildSchema(const fmx::ExprEnv* env, const std::string& fileName) {
  const std::string currentFile = Eval(env, kCurrentFile);
  const std::string& target = fileName.empty() ? currentFile : fileName;
  const std::string quotedTarget = Quoted(target);
  const std::string account = Eval(env, "Get(AccountName)");
  Eval(env, "Get(PrivilegeSetName)");  // part of the fixed sequence of evaluations, but not of the document

  const bool ofCurrentFile = fileName.empty() || fileName == currentFile;
  const std::string fileArgument = ofCurrentFile ? kCurrentFile : quotedTarget;
  Tables tables;
  if (ofCurrentFile) AddQueryRows(Keep(tables, Eval(env, kFieldQuery)), tables);
  if (tables.order.empty()) AddNamedTables(env, fileArgument, tables);
  if (tables.order.empty()) return "{}";

  const std::string scripts = Call(env, "ScriptNames", {fileArgument});
  const std::string layouts = Call(env, "LayoutNames", {fileArgument});
  const std::string valueLists = Call(env, "ValueListNames", {fileArgument});
  const std::string privilegeSets = Call(env, "PrivilegeSetNames", {fileArgument});
  const std::string customFunctions = CustomFunctionNames(env, quotedTarget);

  JsonWriter json(JsonSize(tables));
  json.Text("file", target).Text("account", account);
  WriteTables(json, tables);
  json.Lines("scripts", scripts).Lines("layouts", layouts).Lines("valueLists", valueLists);
  json.Lines("privilegeSets", privilegeSets).Lines("customFunctions", customFunctions);
  return json.Finish();
}

fmx::errcode Do_GetSchema(short, const fmx::ExprEnv& env, const fmx::DataVect& args, fmx::Data& result) {
  SetTextResult(BuildSchema(&env, GetTextArg(args, 0)), result);
  return 0;
}
