#include "references/References.h"

#include <algorithm>
#include <pugixml.hpp>

#include "references/ReferenceIndex.h"
#include "solution/SampleDesign.h"

namespace solution {
namespace {

std::string Line(const Reference& reference) {
  return std::string(NamesOf(reference.from->kind).word) + ' ' + DisplayName(*reference.from) + " -> " +
         std::string(NamesOf(reference.toKind).word) + ' ' + reference.toName + " (" + reference.place + ')';
}

// All references but those to occurrences, which accompany most others.
std::string Lines(const Design& design, const std::vector<const Design*>& others = {}) {
  std::string lines;
  for (const Reference& reference : FindReferences(design, others)) {
    if (reference.toKind != Kind::kTableOccurrence) lines += Line(reference) + '\n';
  }
  return lines;
}

TEST(References, FindsThemInEveryKindOfElement) {
  EXPECT_EQ(
      Lines(Sample()),
      "file Orders.fmp12 -> layout Order Form (Defaults)\n"
      "file Orders.fmp12 -> script Start (trigger OnFirstWindowOpen)\n"
      "tableOccurrence Orders -> table Orders (BaseTableSourceReference)\n"
      "tableOccurrence Customers -> table Customers (BaseTableSourceReference)\n"
      "tableOccurrence orders CUSTOMER -> table Customers (BaseTableSourceReference)\n"
      "field Orders::Price -> customFunction Net (AutoEnter/Calculated)\n"
      "field Orders::Price -> field Customers::Discount (AutoEnter/Calculated)\n"
      "field Orders::Price -> customFunction VAT.Rate (AutoEnter/Calculated)\n"
      "field Orders::Price -> field Orders::Customer ID (Validation/Calculated)\n"
      "field Orders::Price -> valueList Status (Validation)\n"
      "field Orders::Line Total -> field Orders::Price (Calculation)\n"
      "field Orders::Line Total -> field Orders::Quantity (Calculation)\n"
      "field Orders::Sum of Totals -> field Orders::Line Total (SummaryInfo/SummaryField)\n"
      "field Orders::Sum of Totals -> table Orders (SummaryInfo/SummaryField/FieldReference)\n"
      "field Orders::Photo -> baseDirectory Orders/ (Storage/Remote)\n"
      "relationship Orders <-> orders CUSTOMER -> field Orders::Customer ID "
      "(JoinPredicateList/JoinPredicate/LeftField)\n"
      "relationship Orders <-> orders CUSTOMER -> field Customers::ID (JoinPredicateList/JoinPredicate/RightField)\n"
      "layout Order Form -> theme com.example.theme (LayoutThemeReference)\n"
      "layout Order Form -> field Orders::Status (Edit Box 1)\n"
      "layout Order Form -> field Orders::Line Total (Edit Box 1)\n"
      "layout Order Form -> valueList Status (Edit Box 1)\n"
      "layout Order Form -> script Reset (Button \"go\", step 1 Perform Script)\n"
      "layout Order Form -> field Customers::Name (Button \"go\")\n"
      "layout Order Form -> field Customers::Name (Portal 3, Edit Box 4)\n"
      "layout Order Form -> customFunction VAT.Rate (Text 5)\n"
      "layout Order Form -> field Orders::Quantity (Text 5)\n"
      "layout Order Form -> script Log (trigger OnRecordLoad)\n"
      "script Start -> field Orders::Line Total (step 2 Set Variable)\n"
      "script Start -> field Orders::a + b (step 2 Set Variable)\n"
      "script Start -> field Customers::and (step 3 If)\n"
      "script Start -> field Orders::Status (step 4 Set Field)\n"
      "script Start -> script Reset (step 5 Perform Script)\n"
      "script Start -> layout Order Form (step 7 Go to Layout)\n"
      "script Start -> field Orders::Quantity (step 9 Import Records)\n"
      "script Start -> externalDataSource Warehouse (step 10 Perform Script)\n"
      "script Start -> script Restock (step 10 Perform Script)\n"
      "script Start -> field <Field Missing> (step 11 Set Field)\n"
      "script Start -> customFunction <Function Missing> (step 11 Set Field)\n"
      "script Start -> field Stock::On Hand (step 12 Show Custom Dialog)\n"
      "script Reset -> script Log (step 1 Perform Script)\n"
      "script Reset -> script Start (step 2 Perform Script)\n"
      "valueList People -> field Customers::Name (Field/PrimaryField)\n"
      "customFunction Net -> customFunction Net (Calculation)\n"
      "customFunction Net -> customFunction VAT.Rate (Calculation)\n"
      "customMenu Orders Menu -> field Orders::Status (item 1)\n"
      "customMenu Orders Menu -> field Customers::Name (item 1, step 1 Show Custom Dialog)\n"
      "customMenuSet Office -> customMenu Orders Menu (CustomMenuList)\n"
      "account clerk -> privilegeSet Clerks (PrivilegeSetReference)\n"
      "privilegeSet Clerks -> table Orders (access/Records/Custom/Table)\n"
      "privilegeSet Clerks -> field Orders::Status (access/Records/Custom/Table/View)\n"
      "privilegeSet Clerks -> layout Lists (access/Layouts/Custom/Layout)\n"
      "extendedPrivilege fmapp -> privilegeSet Clerks (PrivilegeSetReference)\n");
}

TEST(References, AreTheSameWithoutFileMakersAnalysis) {
  pugi::xml_document document;
  document.load_string(SampleText().c_str(), pugi::parse_cdata | pugi::parse_escapes);
  for (const auto& found : document.select_nodes("//ChunkList")) found.node().parent().remove_child(found.node());
  std::ostringstream text;
  document.save(text, "", pugi::format_raw);
  EXPECT_EQ(Lines(*ReadText(text.str())), Lines(Sample()));
}

TEST(References, ReachIntoOtherFilesWithExports) {
  const auto warehouse = ReadText(
      "<FMSaveAsXML version=\"2.2.3.0\" File=\"Warehouse.fmp12\"><Structure><AddAction><BaseTableCatalog>"
      "<BaseTable id=\"129\" name=\"Items\"/></BaseTableCatalog><FieldsForTables><FieldCatalog>"
      "<BaseTableReference id=\"129\"/><ObjectList><Field id=\"3\" name=\"On Hand\"><UUID>F-1</UUID></Field>"
      "<Field id=\"4\" "
      "name=\"SKU\"><UUID>F-2</UUID></Field></ObjectList></FieldCatalog></FieldsForTables><ScriptCatalog>"
      "<Script id=\"1\" name=\"Restock now\"><UUID>0000AAAA-0000-4000-8000-000000000000</UUID></Script></ScriptCatalog>"
      "</AddAction></Structure></FMSaveAsXML>");
  // A reference with the UUID of a field shows which table the occurrence belongs to.
  const auto orders = ReadText(SampleWith("<FieldReference id=\"0\" name=\"&lt;Field Missing&gt;\">",
                                          "<FieldReference id=\"4\" name=\"SKU\" UUID=\"F-2\">"
                                          "<TableOccurrenceReference id=\"1065092\" name=\"Stock\"/>"));
  std::string found;
  for (const Reference& reference : FindReferences(*orders, {warehouse.get()})) {
    if (reference.to != nullptr && warehouse->Find(reference.to->uuid) == reference.to) found += Line(reference) + '\n';
  }
  EXPECT_EQ(found,
            "script Start -> script Restock now (step 10 Perform Script)\n"
            "script Start -> field Items::SKU (step 11 Set Field)\n"
            "script Start -> field Items::On Hand (step 12 Show Custom Dialog)\n");
}

class ReferenceIndexTest : public testing::Test {
 protected:
  const ReferenceIndex index_{FindReferences(Sample())};

  const Element& Only(std::string_view name) const {
    const auto found = FindElements(Sample(), name);
    EXPECT_EQ(found.size(), 1u) << name;
    return found.empty() ? Sample().file() : *found.front();
  }
};

TEST_F(ReferenceIndexTest, DistinguishesUsedByFromUses) {
  std::vector<std::string> users;
  for (const Reference* reference : index_.UsedBy(Only("VAT.Rate"))) users.push_back(DisplayName(*reference->from));
  EXPECT_EQ(users, (std::vector<std::string>{"Orders::Price", "Order Form", "Net"}));
  EXPECT_EQ(index_.Uses(Only("Net")).size(), 1u);  // not itself
  EXPECT_TRUE(index_.Uses(Only("VAT.Rate")).empty());
}

TEST_F(ReferenceIndexTest, FindsUnusedAndBrokenElements) {
  std::string unused;
  for (const Element* element : index_.Unused(Sample())) unused += DisplayName(*element) + ", ";
  EXPECT_EQ(unused, "Orders::ID, Orders::Sum of Totals, Orders::Name, Orders::Photo, Lists, Unused, People, Office, ");
  const auto broken = std::count_if(index_.all().begin(), index_.all().end(), IsBroken);
  EXPECT_EQ(broken, 2);
}

TEST_F(ReferenceIndexTest, FollowsTheCallsOfAScriptOnce) {
  std::string chain;
  for (const auto& call : index_.CallChain(Only("Start"))) {
    chain +=
        std::to_string(call.depth) + ' ' + std::string(call.script->name) + (call.isRepeated ? " again" : "") + ", ";
  }
  EXPECT_EQ(chain, "1 Reset, 2 Log, 2 Start again, ");
}

TEST_F(ReferenceIndexTest, FindsElementsByName) {
  EXPECT_EQ(Only("orders::line total").name, "Line Total");
  EXPECT_EQ(DisplayName(Only("orders CUSTOMER::Name")), "Customers::Name");
  EXPECT_EQ(&Only(Only("Discount").uuid), &Only("Discount"));
  EXPECT_EQ(FindElements(Sample(), "Name").size(), 2u);
  EXPECT_TRUE(FindElements(Sample(), "Nobody").empty());
}

}  // namespace
}  // namespace solution
