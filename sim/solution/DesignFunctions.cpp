// The design functions as a table, and what each returns. Lists are separated by carriage returns, none at the end.
#include "solution/DesignFunctions.h"

#include <algorithm>
#include <string>
#include <string_view>
#include <utility>

#include "calc/Unicode.h"
#include "solution/Sql.h"

namespace sim {
namespace {

using calc::Value;
using Arguments = std::span<const Value>;

constexpr std::u16string_view kQualifier = u"::";

class List {
 public:
  void Add(std::u16string_view text) {
    if (!first_) text_ += u'\r';
    first_ = false;
    text_ += text;
  }
  Value Result() && { return Value::OfText(std::move(text_)); }

 private:
  std::u16string text_;
  bool first_ = true;
};

template <typename Item>
Value Names(const std::vector<Item>& items) {
  List list;
  for (const Item& item : items) list.Add(item.name);
  return std::move(list).Result();
}

std::u16string IdText(int id) { return calc::Number(id).ToText(); }

template <typename Item>
Value Ids(const std::vector<Item>& items) {
  List list;
  for (const Item& item : items) list.Add(IdText(item.id));
  return std::move(list).Result();
}

/// In order of creation, which these functions use regardless of the order in the dialog.
template <typename Item>
std::vector<Item> ById(std::vector<Item> items) {
  std::stable_sort(items.begin(), items.end(), [](const Item& a, const Item& b) { return a.id < b.id; });
  return items;
}

/// Scripts or layouts; separators are listed by their name "-".
template <typename Item>
Value ListedNames(const std::vector<Item>& items) {
  List list;
  for (const Item& item : items) {
    if (item.kind == ListItem::kItem || item.kind == ListItem::kSeparator) list.Add(item.name);
  }
  return std::move(list).Result();
}

/// The table behind a layout or table occurrence; a layout takes precedence over an occurrence of the same name.
const BaseTable* TableBehind(const Solution& solution, std::u16string_view name) {
  const Layout* layout = solution.FindLayout(name);
  const TableOccurrence* occurrence = nullptr;
  if (!layout) {
    occurrence = solution.FindOccurrence(name);
  } else if (layout->occurrenceId) {
    occurrence = solution.FindOccurrence(*layout->occurrenceId);
  }
  return occurrence ? solution.TableOf(*occurrence) : nullptr;
}

std::vector<Field> FieldsBehind(const Solution& solution, std::u16string_view name) {
  const BaseTable* table = TableBehind(solution, name);
  return table ? ById(table->fields) : std::vector<Field>();
}

const Field* FindField(const BaseTable* table, std::u16string_view name) {
  if (!table) return nullptr;
  const auto found = std::find_if(table->fields.begin(), table->fields.end(),
                                  [name](const Field& field) { return calc::EqualIgnoringCase(field.name, name); });
  return found == table->fields.end() ? nullptr : &*found;
}

/// `name` is "Occurrence::Field", or a field's name, which is looked up in every table.
const Field* FindField(const Solution& solution, std::u16string_view name) {
  const auto qualifier = name.find(kQualifier);
  if (qualifier != name.npos) {
    const TableOccurrence* occurrence = solution.FindOccurrence(name.substr(0, qualifier));
    return occurrence ? FindField(solution.TableOf(*occurrence), name.substr(qualifier + kQualifier.size())) : nullptr;
  }
  for (const BaseTable& table : solution.baseTables) {
    if (const Field* field = FindField(&table, name)) return field;
  }
  return nullptr;
}

std::u16string StorageWord(const Field& field) {
  if (field.global) return u"Global";
  if (field.fieldClass == FieldClass::kSummary) return u"Summary";
  if (field.fieldClass == FieldClass::kNormal) return u"Standard";
  return field.stored ? u"StoredCalc" : u"UnstoredCalc";
}

// In the order of DataType.
constexpr std::u16string_view kTypeWords[] = {u"Text", u"Number", u"Date", u"Time", u"Timestamp", u"Container"};

Value FieldType(const Solution& solution, Arguments names) {
  const Field* field = FindField(solution, names[0].AsText());
  if (!field) return {};
  std::u16string words = StorageWord(*field) + u" ";
  words += kTypeWords[static_cast<std::size_t>(field->dataType)];
  words += field->indexed ? u" Indexed " : u" Unindexed ";
  return Value::OfText(words + IdText(field->repetitions));
}

Value FieldRepetitions(const Solution& solution, Arguments names) {
  const Field* field = FindField(TableBehind(solution, names[0].AsText()), names[1].AsText());
  return field ? Value::OfNumber(field->repetitions) : Value();
}

Value FieldComment(const Solution& solution, Arguments names) {
  const Field* field = FindField(solution, names[0].AsText());
  return field ? Value::OfText(field->comment) : Value();
}

Value ValueListItems(const Solution& solution, Arguments names) {
  for (const ValueList& list : solution.valueLists) {
    if (calc::EqualIgnoringCase(list.name, names[0].AsText())) return Value::OfText(list.customValues);
  }
  return {};
}

/// A function whose first argument names the file.
struct FileFunction {
  const char16_t* name;
  int minArguments;
  int maxArguments;
  bool exists;                                               ///< in FileMaker
  Value (*call)(const Solution& solution, Arguments names);  ///< `names`: the arguments after the file
};

constexpr FileFunction kFileFunctions[] = {
    {u"TableNames", 1, 1, true, [](const Solution& file, Arguments) { return Names(ById(file.occurrences)); }},
    {u"TableIDs", 1, 1, true, [](const Solution& file, Arguments) { return Ids(ById(file.occurrences)); }},
    {u"BaseTableNames", 1, 1, true, [](const Solution& file, Arguments) { return Names(file.baseTables); }},
    {u"FieldNames", 2, 2, true,
     [](const Solution& file, Arguments names) { return Names(FieldsBehind(file, names[0].AsText())); }},
    {u"FieldIDs", 2, 2, true,
     [](const Solution& file, Arguments names) { return Ids(FieldsBehind(file, names[0].AsText())); }},
    {u"FieldType", 2, 2, true, FieldType},
    {u"FieldRepetitions", 3, 3, true, FieldRepetitions},
    {u"FieldComment", 2, 2, true, FieldComment},
    {u"LayoutNames", 1, 1, true, [](const Solution& file, Arguments) { return ListedNames(file.layouts); }},
    {u"ScriptNames", 1, 1, true, [](const Solution& file, Arguments) { return ListedNames(file.scripts); }},
    {u"ValueListNames", 1, 1, true, [](const Solution& file, Arguments) { return Names(ById(file.valueLists)); }},
    {u"ValueListItems", 2, 2, true, ValueListItems},
    {u"PrivilegeSetNames", 1, 1, false,
     [](const Solution& file, Arguments) { return Names(ById(file.privilegeSets)); }},
    {u"CustomFunctionNames", 0, 1, false, [](const Solution& file, Arguments) { return Names(file.customFunctions); }},
};

/// An empty name means the current file. As in FileMaker, a name without a period may lack the extension.
const Solution* FindFile(const OpenFiles& files, const Solution* current, std::u16string_view name) {
  if (name.empty()) return current;
  const bool mayOmitExtension = name.find(u'.') == name.npos;
  const auto found = std::find_if(files.files.begin(), files.files.end(), [&](const Solution* file) {
    return calc::EqualIgnoringCase(mayOmitExtension ? file->name : file->fileName, name);
  });
  return found == files.files.end() ? nullptr : *found;
}

const Solution* FileOf(const OpenFiles& files, const Solution* current, Arguments arguments) {
  return FindFile(files, current, arguments.empty() ? std::u16string() : arguments[0].AsText());
}

Value WindowNames(const OpenFiles& files, const Solution* current, Arguments arguments) {
  const Solution* file = FileOf(files, current, arguments);
  List list;
  for (const Window& window : files.windows) {
    if (arguments.empty() || window.solution == file) list.Add(window.name);
  }
  return std::move(list).Result();
}

Value DatabaseNames(const OpenFiles& files) {
  List list;
  for (const Solution* file : files.files) list.Add(file->name);
  return std::move(list).Result();
}

Value Sql(const Solution* current, const HostBehaviour& behaviour, Arguments arguments) {
  if (!current) return Value::OfText(u"?");
  return Value::OfText(ExecuteSql(arguments[0].AsText(), *current, arguments[1].AsText(), arguments[2].AsText(),
                                  arguments.subspan(3), behaviour));
}

}  // namespace

std::vector<calc::HostFunction> DesignFunctions(const OpenFiles& files, const Solution* const& current,
                                                const HostBehaviour& behaviour) {
  std::vector<calc::HostFunction> functions;
  for (const FileFunction& function : kFileFunctions) {
    if (!function.exists && !behaviour.allDesignFunctions) continue;
    functions.push_back({function.name, function.minArguments, function.maxArguments,
                         [&files, &current, call = function.call](Arguments arguments) {
                           const Solution* file = FileOf(files, current, arguments);
                           if (!file) return Value();
                           return call(*file, arguments.subspan(std::min<std::size_t>(1, arguments.size())));
                         }});
  }
  functions.push_back(
      {u"WindowNames", 0, 1, [&](Arguments arguments) { return WindowNames(files, current, arguments); }});
  functions.push_back({u"DatabaseNames", 0, 0, [&](Arguments) { return DatabaseNames(files); }});
  functions.push_back({u"ExecuteSQL", 3, -1, [&](Arguments arguments) { return Sql(current, behaviour, arguments); }});
  return functions;
}

}  // namespace sim
