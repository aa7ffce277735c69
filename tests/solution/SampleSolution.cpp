// A small design, member by member.
#include "tests/solution/SampleSolution.h"

#include <utility>

using sim::DataType;
using sim::FieldClass;
using sim::ListItem;

namespace {

sim::Field MakeField(int id, std::u16string name, DataType type, FieldClass fieldClass = FieldClass::kNormal) {
  sim::Field field;
  field.id = id;
  field.name = std::move(name);
  field.dataType = type;
  field.fieldClass = fieldClass;
  return field;
}

sim::BaseTable Orders() {
  sim::BaseTable table{129, u"Orders", 4, {}};
  table.fields = {MakeField(2, u"Number", DataType::kNumber),
                  MakeField(1, u"Title", DataType::kText),
                  MakeField(3, u"Total", DataType::kNumber, FieldClass::kCalculated),
                  MakeField(4, u"Now", DataType::kTime, FieldClass::kCalculated),
                  MakeField(5, u"Latest", DataType::kTimestamp, FieldClass::kSummary),
                  MakeField(6, u"Due", DataType::kDate),
                  MakeField(7, u"Scan", DataType::kContainer)};
  table.fields[0].indexed = true;
  table.fields[0].comment = u"unique";
  table.fields[1].repetitions = 3;
  table.fields[1].maximumLength = 20;
  table.fields[3].stored = false;
  table.fields[5].global = true;
  return table;
}

sim::BaseTable Contacts() {
  sim::BaseTable table{131, u"Contacts", 12, {MakeField(1, u"Name", DataType::kText)}};
  table.fields[0].global = true;
  return table;
}

}  // namespace

sim::Solution SampleSolution() {
  sim::Solution file;
  file.fileName = u"Sales.fmp12";
  file.name = u"Sales";
  file.baseTables = {Orders(), Contacts()};
  file.occurrences = {
      {1065091, u"SysLog", 131}, {1065089, u"Orders", 129}, {1065092, u"Remote", {}}, {1065090, u"contacts", 131}};
  file.layouts = {{9, u"Zoo", ListItem::kFolder, {}},       {8, u"List", ListItem::kItem, 1065090},
                  {7, u"-", ListItem::kSeparator, 1065089}, {6, u"Orders", ListItem::kItem, 1065091},
                  {5, u"--", ListItem::kFolderEnd, {}},     {4, u"Blank", ListItem::kItem, {}}};
  file.scripts = {{3, u"Start", ListItem::kItem, false, {}},
                  {1, u"Admin", ListItem::kFolder, false, {}},
                  {2, u"-", ListItem::kSeparator, false, {}},
                  {5, u"Reset", ListItem::kItem, false, {}},
                  {4, u"--", ListItem::kFolderEnd, false, {}}};
  file.valueLists = {{2, u"YN", u"Yes\rNo"}, {1, u"Names", u""}};
  file.customFunctions = {{u"Zip", {}, u"1"}, {u"Add", {}, u"2"}};
  file.privilegeSets = {{3, u"[Read-Only Access]", {}}, {1, u"[Full Access]", {}}};
  return file;
}
