// Base tables, table occurrences and fields of an export.
#include <algorithm>
#include <string_view>

#include "solution/Catalogs.h"
#include "solution/ExportXml.h"

namespace sim {
namespace {

using std::operator""sv;

constexpr long long kNoMaximum = 4294967295;  // what some versions write for a text without a limit

template <typename Enum>
struct Word {
  std::string_view text;
  Enum value;
};

constexpr Word<FieldClass> kFieldClasses[] = {
    {"Normal"sv, FieldClass::kNormal}, {"Calculated"sv, FieldClass::kCalculated}, {"Summary"sv, FieldClass::kSummary}};
constexpr Word<DataType> kDataTypes[] = {{"Text"sv, DataType::kText},           {"Number"sv, DataType::kNumber},
                                         {"Date"sv, DataType::kDate},           {"Time"sv, DataType::kTime},
                                         {"Timestamp"sv, DataType::kTimestamp}, {"Binary"sv, DataType::kContainer}};

/// The first entry is the default for a missing or unknown word.
template <typename Enum, std::size_t size>
Enum Lookup(const Word<Enum> (&words)[size], std::string_view text) {
  const auto found = std::find_if(words, words + size, [text](const Word<Enum>& word) { return word.text == text; });
  return found == words + size ? words[0].value : found->value;
}

TableOccurrence ReadOccurrence(solution::XmlNode element) {
  TableOccurrence occurrence{.id = xml::Id(element), .name = xml::Name(element), .baseTableId = std::nullopt};
  if (element.attribute("type").value() == "External"sv) return occurrence;
  const solution::XmlNode source = element.child("BaseTableSourceReference");
  const solution::XmlNode reference = (source ? source : element).child("BaseTableReference");
  if (reference) occurrence.baseTableId = xml::Id(reference);
  return occurrence;
}

Field ReadField(solution::XmlNode element) {
  Field field;
  field.id = xml::Id(element);
  field.name = xml::Name(element);
  field.fieldClass = Lookup(kFieldClasses, element.attribute("fieldtype").value());
  field.dataType = Lookup(kDataTypes, element.attribute("datatype").value());
  field.comment = xml::Text(element.attribute("comment"));
  field.formula = xml::Formula(element);

  const solution::XmlNode storage = element.child("Storage");
  field.global = xml::IsTrue(storage.attribute("global"));
  field.stored = storage.attribute("storeCalculationResults").value() != "False"sv;
  const solution::XmlAttribute index = storage.attribute("index");
  field.indexed = index && index.value() != "None";
  field.repetitions = std::max(1, storage.attribute("maxRepetitions").AsInt(1));

  const auto maximum = solution::NumberIn(element.child("Validation").child("MaximumSize").first_text(), 0LL);
  if (maximum > 0 && maximum != kNoMaximum) field.maximumLength = maximum;
  return field;
}

/// The table that a field catalog belongs to; the oldest version names it by one of its occurrences.
BaseTable& TableOfCatalog(solution::XmlNode catalog, Solution& solution) {
  std::optional<int> id;
  if (const solution::XmlNode table = catalog.child("BaseTableReference")) {
    id = xml::Id(table);
  } else if (const auto* of = solution.FindOccurrence(xml::ReferencedId(catalog, "TableOccurrenceReference"))) {
    id = of->baseTableId;
  }
  for (BaseTable& table : solution.baseTables) {
    if (table.id == id) return table;
  }
  throw xml::Damage{catalog, "a FieldCatalog of an unknown table"};
}

}  // namespace

void ReadTables(solution::XmlNode design, Solution& solution) {
  for (const solution::XmlNode element : xml::Entries(design.child("BaseTableCatalog"), "BaseTable")) {
    BaseTable& table = solution.baseTables.emplace_back();
    table.id = xml::Id(element);
    table.name = xml::Name(element);
    table.modifications = element.child("UUID").attribute("modifications").AsInt();
  }
  for (const solution::XmlNode element : xml::Entries(design.child("TableOccurrenceCatalog"), "TableOccurrence")) {
    solution.occurrences.push_back(ReadOccurrence(element));
  }
  for (const solution::XmlNode catalog : design.child("FieldsForTables").children("FieldCatalog")) {
    BaseTable& table = TableOfCatalog(catalog, solution);
    for (const solution::XmlNode element : xml::Entries(catalog.child("ObjectList"), "Field")) {
      table.fields.push_back(ReadField(element));
    }
  }
}

}  // namespace sim
