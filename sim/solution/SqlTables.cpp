// Columns and rows of the tables that ExecuteSQL can see.
#include "solution/SqlTables.h"

#include <span>
#include <string>
#include <utility>

#include "calc/Unicode.h"

namespace sim {
namespace {

using calc::Value;

Value BaseTableName(const SqlRow& row) { return row.table ? Value::OfText(row.table->name) : Value(); }
Value OccurrenceName(const SqlRow& row) { return Value::OfText(row.occurrence->name); }
Value OccurrenceId(const SqlRow& row) { return Value::OfNumber(row.occurrence->id); }
Value BaseTableId(const SqlRow& row) { return Value::OfNumber(row.table->id); }
Value FileName(const SqlRow& row) { return row.table ? Value::OfText(row.solution->name) : Value(); }
Value Modifications(const SqlRow& row) { return row.table ? Value::OfNumber(row.table->modifications) : Value(); }
Value FieldName(const SqlRow& row) { return Value::OfText(row.field->name); }
Value FieldId(const SqlRow& row) { return Value::OfNumber(row.field->id); }
Value Repetitions(const SqlRow& row) { return Value::OfNumber(row.field->repetitions); }

// In the order of the enumerations.
constexpr std::u16string_view kClassNames[] = {u"Normal", u"Calculated", u"Summary"};
constexpr std::u16string_view kTypeNames[] = {u"varchar", u"decimal", u"date", u"time", u"timestamp", u"binary"};

Value FieldClassName(const SqlRow& row) {
  return Value::OfText(std::u16string(kClassNames[static_cast<std::size_t>(row.field->fieldClass)]));
}

Value FieldTypeName(const SqlRow& row) {
  const Field& field = *row.field;
  std::u16string name = field.global ? u"global " : u"";
  name += kTypeNames[static_cast<std::size_t>(field.dataType)];
  if (field.dataType == DataType::kText && field.maximumLength) {
    name.append(u"(").append(calc::Number(*field.maximumLength).ToText()).append(u")");
  }
  return Value::OfText(std::move(name));
}

constexpr SqlColumn kOccurrenceName = {u"TableName", SqlType::kText, OccurrenceName};
constexpr SqlColumn kBaseTableName = {u"BaseTableName", SqlType::kText, BaseTableName};
constexpr SqlColumn kModCount = {u"ModCount", SqlType::kNumber, Modifications};

constexpr SqlColumn kOccurrenceColumns[] = {{u"TableId", SqlType::kNumber, OccurrenceId},
                                            kBaseTableName,
                                            {u"BaseFileName", SqlType::kText, FileName},
                                            kModCount};
constexpr SqlColumn kBaseTableColumns[] = {{u"BaseTableId", SqlType::kNumber, BaseTableId}, kModCount};
constexpr SqlColumn kFieldColumns[] = {
    {u"FieldName", SqlType::kText, FieldName},     {u"FieldType", SqlType::kText, FieldTypeName},
    {u"FieldId", SqlType::kNumber, FieldId},       {u"FieldClass", SqlType::kText, FieldClassName},
    {u"FieldReps", SqlType::kNumber, Repetitions}, kModCount};

std::vector<SqlRow> OccurrenceRows(const Solution& solution) {
  std::vector<SqlRow> rows;
  for (const TableOccurrence& occurrence : solution.occurrences) {
    rows.push_back({&solution, &occurrence, solution.TableOf(occurrence), nullptr});
  }
  return rows;
}

std::vector<SqlRow> BaseTableRows(const Solution& solution) {
  std::vector<SqlRow> rows;
  for (const BaseTable& table : solution.baseTables) rows.push_back({&solution, nullptr, &table, nullptr});
  return rows;
}

/// One row per field of every table; the fields of tables in other files are unknown here.
std::vector<SqlRow> FieldRows(const std::vector<SqlRow>& tables) {
  std::vector<SqlRow> rows;
  for (const SqlRow& table : tables) {
    if (!table.table) continue;
    for (const Field& field : table.table->fields) {
      rows.push_back({table.solution, table.occurrence, table.table, &field});
    }
  }
  return rows;
}

struct SystemTable {
  std::u16string_view name;
  SqlColumn firstColumn;
  std::span<const SqlColumn> columns;
  std::vector<SqlRow> (*rows)(const Solution& solution);
};

constexpr SystemTable kSystemTables[] = {
    {u"FileMaker_Tables", kOccurrenceName, kOccurrenceColumns, OccurrenceRows},
    {u"FileMaker_BaseTables", kBaseTableName, kBaseTableColumns, BaseTableRows},
    {u"FileMaker_Fields", kOccurrenceName, kFieldColumns,
     [](const Solution& solution) { return FieldRows(OccurrenceRows(solution)); }},
    {u"FileMaker_BaseTableFields", kBaseTableName, kFieldColumns,
     [](const Solution& solution) { return FieldRows(BaseTableRows(solution)); }},
};

SqlType TypeOf(const Field& field) {
  if (field.dataType == DataType::kText) return SqlType::kText;
  return field.dataType == DataType::kNumber ? SqlType::kNumber : SqlType::kAny;
}

SqlTable UserTable(const BaseTable* table) {
  SqlTable result;
  if (!table) return result;
  for (const Field& field : table->fields) {
    result.columns.push_back({field.name, TypeOf(field), [](const SqlRow&) { return Value(); }});
  }
  return result;
}

}  // namespace

std::optional<SqlTable> FindSqlTable(std::u16string_view name, const Solution& solution) {
  for (const SystemTable& table : kSystemTables) {
    if (calc::EqualIgnoringCase(table.name, name)) {
      SqlTable result{{table.firstColumn}, table.rows(solution)};
      result.columns.insert(result.columns.end(), table.columns.begin(), table.columns.end());
      return result;
    }
  }
  const TableOccurrence* occurrence = solution.FindOccurrence(name);
  if (!occurrence) return std::nullopt;
  return UserTable(solution.TableOf(*occurrence));
}

}  // namespace sim
