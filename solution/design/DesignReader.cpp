// Reads the elements of a design from the catalogs of an export. Children are always selected by name, because their
// order differs between versions and empty catalogs are missing.
#include "design/DesignReader.h"

#include <algorithm>
#include <charconv>
#include <exception>
#include <functional>
#include <set>

namespace solution {
namespace {

using std::operator""sv;

struct Catalog {
  const char* name;
  const char* member;
  Kind kind;
  Kind folder = Kind::kFile;  // of kinds that are arranged in folders
};

constexpr Catalog kCatalogs[] = {
    {"BaseTableCatalog", "BaseTable", Kind::kTable},
    {"TableOccurrenceCatalog", "TableOccurrence", Kind::kTableOccurrence},
    {"RelationshipCatalog", "Relationship", Kind::kRelationship},
    {"LayoutCatalog", "Layout", Kind::kLayout, Kind::kLayoutFolder},
    {"ScriptCatalog", "Script", Kind::kScript, Kind::kScriptFolder},
    {"ValueListCatalog", "ValueList", Kind::kValueList},
    {"CustomFunctionsCatalog", "CustomFunction", Kind::kCustomFunction, Kind::kCustomFunctionFolder},
    {"CustomMenuCatalog", "CustomMenu", Kind::kCustomMenu},
    {"CustomMenuSetCatalog", "CustomMenuSet", Kind::kCustomMenuSet},
    {"ThemeCatalog", "Theme", Kind::kTheme},
    {"AccountsCatalog", "Account", Kind::kAccount},
    {"PrivilegeSetsCatalog", "PrivilegeSet", Kind::kPrivilegeSet},
    {"ExtendedPrivilegesCatalog", "ExtendedPrivilege", Kind::kExtendedPrivilege},
    {"ExternalDataSourceCatalog", "ExternalDataSource", Kind::kExternalDataSource},
    {"BaseDirectoryCatalog", "BaseDirectory", Kind::kBaseDirectory},
};

struct Detail {
  const char* catalog;
  const char* member;
  const char* reference;
  Kind kind;
};

// Parts that some versions write separately from the definition of an element.
constexpr Detail kDetails[] = {
    {"StepsForScripts", "Script", "ScriptReference", Kind::kScript},
    {"CalcsForCustomFunctions", "CustomFunctionCalc", "CustomFunctionReference", Kind::kCustomFunction},
    {"OptionsForValueLists", "ValueList", "ValueListReference", Kind::kValueList},
};
constexpr Detail kLayoutDetail = {"LayoutCatalog", "Layout", "LayoutReference", Kind::kLayout};

constexpr std::string_view kFolderEnd = "--";

constexpr std::string_view kGuest = "[Guest]";
constexpr std::string_view kOldGuest = "[\uE002]";  // in format 2.0

int Id(XmlNode node) {
  const std::string_view text = node.attribute("id").value();
  int id = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), id);
  if (error == std::errc() && end == text.data() + text.size() && id >= 0) return id;
  throw Damage{node, "a " + std::string(node.name()) + " without a usable id"};
}

int ReferencedId(XmlNode node, const char* reference) {
  if (const XmlNode child = node.child(reference)) return Id(child);
  throw Damage{node, "a " + std::string(node.name()) + " without a " + reference};
}

// Some catalogs hold their members in an ObjectList.
XmlNode Members(XmlNode catalog) {
  const XmlNode list = catalog.child("ObjectList");
  return list ? list : catalog;
}

std::string_view AccountName(XmlNode account) {
  const XmlNode name = account.child("Authentication").child("AccountName");
  const XmlNode insecure = name.child("INSECURE_TEXT");
  const std::string_view text = (insecure ? insecure : name).first_text();
  return text == kOldGuest ? kGuest : text;
}

Element MakeElement(Kind kind, XmlNode node) {
  Element element;
  element.kind = kind;
  element.id = Id(node);
  element.name = kind == Kind::kAccount ? AccountName(node) : node.attribute("name").value();
  const XmlNode uuid = node.child("UUID");
  element.uuid = uuid.first_text();
  if (const auto modifications = uuid.attribute("modifications")) element.modifications = modifications.AsInt();
  element.user = uuid.attribute("userName").value();
  element.account = uuid.attribute("accountName").value();
  element.time = uuid.attribute("timestamp").value();
  element.nodes.push_back(node);
  return element;
}

class Reader {
 public:
  explicit Reader(Design& design)
      : design_(design),
        catalogs_(design.document().Part("Structure")),
        functionsWithFormula_(FunctionsWithFormula()) {}

  void Read() {
    AddFile();
    for (const Catalog& catalog : kCatalogs) {
      ReadCatalog(catalog);
      if (catalog.kind == Kind::kTableOccurrence) FindTables();
      if (catalog.kind == Kind::kTableOccurrence) ReadFields();
    }
    for (const Detail& detail : kDetails) AddDetails(catalogs_, detail);
    const XmlNode modified = design_.document().Part("Structure", "ModifyAction");
    AddDetails(modified, kLayoutDetail);
    AddFieldDetails(modified);
    design_.IndexNames();
  }

 private:
  void AddFile() {
    Element file;
    file.name = design_.document().Attribute("File");
    file.uuid = design_.document().Attribute("UUID");
    for (const XmlNode node : {design_.document().Part("Metadata"), catalogs_.child("FileAccessCatalog")}) {
      if (node) file.nodes.push_back(node);
    }
    design_.Add(std::move(file));
  }

  Element& Add(Element element) {
    const bool isKnown = element.kind == Kind::kField ? design_.FindField(element.parent, element.id) != nullptr
                                                      : design_.Find(element.kind, element.id) != nullptr;
    if (isKnown) {
      const XmlNode node = element.nodes.front();
      throw Damage{node, "a second " + std::string(node.name()) + " with the id " + std::to_string(element.id)};
    }
    return design_.Add(std::move(element));
  }

  void ReadCatalog(const Catalog& catalog) {
    std::vector<const Element*> folders;
    for (const XmlNode node : Members(catalogs_.child(catalog.name)).children(catalog.member)) {
      const std::string_view folder = node.attribute("isFolder").value();
      if (folder == "Marker" || IsUnmarkedFolderEnd(node)) {
        if (!folders.empty()) folders.pop_back();
      } else if (node.attribute("isSeparatorItem").value() != "True"sv) {
        const bool isFolder = folder == "True" || IsUnmarkedFolder(node);
        Element element = MakeElement(isFolder ? catalog.folder : catalog.kind, node);
        element.parent = folders.empty() ? nullptr : folders.back();
        const Element& added = Add(std::move(element));
        if (folder == "True") folders.push_back(&added);
      }
    }
  }

  // Before 2.2.3, folders of custom functions look like functions without a formula, listed by id; which functions they
  // contain is not recorded.
  bool IsUnmarkedFolderEnd(XmlNode node) const {
    return node.name() == "CustomFunction"sv && node.attribute("name").value() == kFolderEnd;
  }
  bool IsUnmarkedFolder(XmlNode node) const {
    return node.name() == "CustomFunction"sv && design_.document().Attribute("version") < "2.2.3"sv &&
           functionsWithFormula_.count(node.attribute("id").AsInt()) == 0;
  }
  std::set<int> FunctionsWithFormula() const {
    std::set<int> ids;
    for (const XmlNode node : Members(catalogs_.child("CalcsForCustomFunctions")).children("CustomFunctionCalc")) {
      if (node.child("Calculation")) ids.insert(node.child("CustomFunctionReference").attribute("id").AsInt());
    }
    return ids;
  }

  void FindTables() {
    for (Element& occurrence : design_.elements()) {
      if (occurrence.kind != Kind::kTableOccurrence) continue;
      const XmlNode node = occurrence.nodes.front();
      const XmlNode source = node.child("BaseTableSourceReference");
      const XmlNode table = (source ? source : node).child("BaseTableReference");
      if (table && node.attribute("type").value() != "External"sv) {
        occurrence.table = design_.Find(Kind::kTable, Id(table));
      }
    }
  }

  // The oldest version names a field catalog's table by one of its occurrences.
  const Element* TableOfCatalog(XmlNode catalog) const {
    const Element* table = nullptr;
    if (const XmlNode reference = catalog.child("BaseTableReference")) {
      table = design_.Find(Kind::kTable, Id(reference));
    } else {
      const int id = ReferencedId(catalog, "TableOccurrenceReference");
      if (const Element* occurrence = design_.Find(Kind::kTableOccurrence, id)) table = occurrence->table;
    }
    if (table == nullptr) throw Damage{catalog, "fields of an unknown table"};
    return table;
  }

  void ReadFields() {
    for (const XmlNode catalog : catalogs_.child("FieldsForTables").children("FieldCatalog")) {
      const Element* table = TableOfCatalog(catalog);
      for (const XmlNode node : catalog.child("ObjectList").children("Field")) {
        Element field = MakeElement(Kind::kField, node);
        field.parent = table;
        Add(std::move(field));
      }
    }
  }

  void AddDetails(XmlNode catalogs, const Detail& detail) {
    for (const XmlNode node : Members(catalogs.child(detail.catalog)).children(detail.member)) {
      auto* element = design_.Find(detail.kind, ReferencedId(node, detail.reference));
      if (element == nullptr && detail.kind == Kind::kCustomFunction && !node.child("Calculation")) continue;
      if (element == nullptr) throw Damage{node, "details of an unknown " + std::string(NamesOf(detail.kind).title)};
      element->nodes.push_back(node);
    }
  }

  // Summaries, lookups and formulas of fields that are listed above.
  void AddFieldDetails(XmlNode catalogs) {
    for (const XmlNode catalog : catalogs.child("FieldsForTables").children("FieldCatalog")) {
      const Element* table = TableOfCatalog(catalog);
      for (const XmlNode node : catalog.child("ObjectList").children("Field")) {
        auto* field = design_.FindField(table, ReferencedId(node, "FieldReference"));
        if (field == nullptr) throw Damage{node, "details of an unknown field"};
        field->nodes.push_back(node);
      }
    }
  }

  Design& design_;
  const XmlNode catalogs_;
  const std::set<int> functionsWithFormula_;
};

// Turns every failure of reading into one line.
std::unique_ptr<const Design> Report(const std::string& path, std::string& error,
                                     const std::function<std::string()>& bytes) {
  std::string reason;
  try {
    auto document = std::make_unique<Document>(bytes());
    for (std::string& note : document->notes) note.insert(0, path + ' ');
    auto design = std::make_unique<Design>(std::move(document));
    try {
      Reader(*design).Read();
    } catch (const Damage& damage) {
      throw design->document().Explain(damage);
    }
    return design;
  } catch (const Refusal& refusal) {
    reason = refusal.reason;
  } catch (const std::exception&) {  // only memory allocation throws
    reason = "is too large for the available memory";
  }
  error = path + " " + reason;
  std::replace_if(
      error.begin(), error.end(), [](unsigned char byte) { return byte < 0x20; }, ' ');
  return nullptr;
}

}  // namespace

std::unique_ptr<const Design> ReadDesign(const std::string& path, std::string& error) {
  return Report(path, error, [&path] { return ReadFile(path); });
}

std::unique_ptr<const Design> ReadDesignBytes(std::string bytes, const std::string& path, std::string& error) {
  return Report(path, error, [&bytes] { return std::move(bytes); });
}

}  // namespace solution
