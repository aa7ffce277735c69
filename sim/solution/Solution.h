// The design of one FileMaker file, as far as the simulated host needs it. Plain data; the reader fills it.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "calc/Environment.h"

namespace sim {

enum class FieldClass { kNormal, kCalculated, kSummary };
enum class DataType { kText, kNumber, kDate, kTime, kTimestamp, kContainer };

struct Field {
  int id = 0;
  std::u16string name;
  FieldClass fieldClass = FieldClass::kNormal;
  DataType dataType = DataType::kText;
  bool global = false;
  bool stored = true;  ///< false for an unstored calculation
  bool indexed = false;
  int repetitions = 1;
  std::optional<long long> maximumLength;  ///< characters, of a validated text field
  std::u16string formula;                  ///< of a calculation field
  std::u16string comment;
};

struct BaseTable {
  int id = 0;
  std::u16string name;
  int modifications = 0;  ///< how often a change of its definition was saved
  std::vector<Field> fields;
};

struct TableOccurrence {
  int id = 0;
  std::u16string name;
  std::optional<int> baseTableId;  ///< absent for an occurrence of another file's table
};

/// Scripts and layouts share one form of list: items, folders and their ends, separators.
enum class ListItem { kItem, kFolder, kFolderEnd, kSeparator };

struct Layout {
  int id = 0;
  std::u16string name;
  ListItem kind = ListItem::kItem;
  std::optional<int> occurrenceId;
};

/// Ids of the steps whose parameters the reader keeps, and of the steps without parameters that control a script.
enum StepId : int {
  kStepSaveAsXml = 3,
  kStepPause = 62,
  kStepIf = 68,
  kStepElse = 69,
  kStepEndIf = 70,
  kStepSetErrorCapture = 86,
  kStepShowDialog = 87,
  kStepComment = 89,
  kStepExitScript = 103,
  kStepElseIf = 125,
  kStepSetVariable = 141,
};

/// One step. `id` is the only reliable key: names are in the language of the client that saved the export.
struct ScriptStep {
  int id = 0;
  std::u16string name;
  bool enabled = true;
  bool on = false;                           ///< of Set Error Capture
  std::u16string text;                       ///< the variable's name of Set Variable
  std::u16string calculation;                ///< the condition, value, result, duration, window or message
  std::u16string repetition;                 ///< of Set Variable
  std::u16string title;                      ///< formula, of Show Custom Dialog
  std::vector<std::u16string> destinations;  ///< of Save a Copy as XML, as written: paths or variable names
};

struct Script {
  int id = 0;
  std::u16string name;
  ListItem kind = ListItem::kItem;
  bool runWithFullAccess = false;
  std::vector<ScriptStep> steps;
};

struct ValueList {
  int id = 0;
  std::u16string name;
  std::u16string customValues;  ///< separated by carriage returns; empty for a list from a field
};

/// The id of the privilege set with full access, whose name is localised.
inline constexpr int kFullAccess = 1;

struct PrivilegeSet {
  int id = 0;
  std::u16string name;
  std::vector<std::u16string> extendedPrivileges;  ///< keywords such as "fmplugin"
};

struct Account {
  int id = 0;
  std::u16string name;
  bool enabled = true;
  int privilegeSetId = 0;
};

/// A file's name as FileMaker's functions return it: without a final ".fmp12", in any case.
std::u16string_view WithoutExtension(std::u16string_view fileName);

struct Solution {
  std::string path;         ///< of the export, UTF-8
  std::u16string fileName;  ///< with extension, as the export names it: "Sales.fmp12"
  std::u16string name;      ///< without extension: "Sales"
  std::vector<BaseTable> baseTables;
  std::vector<TableOccurrence> occurrences;
  std::vector<Layout> layouts;
  std::vector<Script> scripts;
  std::vector<ValueList> valueLists;
  std::vector<calc::CustomFunction> customFunctions;
  std::vector<Account> accounts;
  std::vector<PrivilegeSet> privilegeSets;
  std::u16string autoLoginAccount;  ///< empty when the file asks at opening
  std::optional<int> startLayoutId;
  std::vector<std::string> notes;  ///< what does not work as in FileMaker, one line each, to show when it is opened

  const BaseTable* FindBaseTable(int id) const;
  /// The table of `occurrence`; nullptr when it is in another file.
  const BaseTable* TableOf(const TableOccurrence& occurrence) const;
  const TableOccurrence* FindOccurrence(int id) const;
  /// Names are compared in any case, as in FileMaker. Folders and separators are not found by name.
  const TableOccurrence* FindOccurrence(std::u16string_view name) const;
  const Layout* FindLayout(std::u16string_view name) const;
  const Script* FindScript(std::u16string_view name) const;
  const PrivilegeSet* FindPrivilegeSet(int id) const;
  const Account* FindAccount(std::u16string_view name) const;
};

}  // namespace sim
