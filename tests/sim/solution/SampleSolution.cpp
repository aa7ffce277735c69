// One export and what other versions write differently.
#include "sim/solution/SampleSolution.h"

#include <cstdlib>

#include "solution/SolutionReader.h"

namespace {

// As 2.2.3.4 writes it, but for (CR), which stands for a carriage return, and comments where the contents of a value
// list and the formula of a custom function stand in some versions.
constexpr std::string_view kDocument = R"(<?xml version="1.0"?>
<FMSaveAsXML Source="20.1" version="2.2.3.4" File="Sales.FMP12"><Structure><AddAction>
<BaseTableCatalog><SortOrder>1</SortOrder><UUID modifications="9"></UUID>
<BaseTable id="129" name="Orders"><UUID modifications="4">X</UUID></BaseTable>
<BaseTable id="131" name="Contacts"><UUID modifications="12">X</UUID></BaseTable></BaseTableCatalog>
<TableOccurrenceCatalog><TagList></TagList>
<TableOccurrence id="1065091" name="SysLog" type="Local"><BaseTableSourceReference>
<BaseTableReference id="131"></BaseTableReference></BaseTableSourceReference></TableOccurrence>
<TableOccurrence id="1065089" name="Orders" type="Local"><BaseTableSourceReference>
<BaseTableReference id="129"></BaseTableReference></BaseTableSourceReference></TableOccurrence>
<TableOccurrence id="1065092" name="Remote" type="External"><BaseTableSourceReference>
<BaseTableReference id="129"></BaseTableReference></BaseTableSourceReference></TableOccurrence>
<TableOccurrence id="1065090" name="contacts" type="Local"><BaseTableSourceReference>
<BaseTableReference id="131"></BaseTableReference></BaseTableSourceReference></TableOccurrence></TableOccurrenceCatalog>
<FieldsForTables><FieldCatalog><BaseTableReference id="129" name="Orders"></BaseTableReference><ObjectList>
<Field id="2" name="Number" fieldtype="Normal" datatype="Number" comment="größer &lt;&#13;😀">
<Storage index="Minimal" global="False" maxRepetitions="1"></Storage></Field>
<Field id="1" name="Title" fieldtype="Normal" datatype="Text">
<AutoEnter type="Calculated"><Calculated><Calculation><Text>not the field's</Text></Calculation></Calculated></AutoEnter>
<Validation><MaximumSize>20</MaximumSize></Validation><Storage index="None" maxRepetitions="3"></Storage></Field>
<Field id="3" name="Total" fieldtype="Calculated" datatype="Number">
<Calculation><Text><![CDATA[Quantity(CR)* a]]]]><![CDATA[>b]]></Text></Calculation></Field>
<Field id="4" name="Now" fieldtype="Calculated" datatype="Time">
<Storage storeCalculationResults="False" index="None" global="False"></Storage></Field>
<Field id="5" name="Latest" fieldtype="Summary" datatype="Timestamp"><SummaryInfo></SummaryInfo></Field>
<Field id="6" name="Due" fieldtype="Normal" datatype="Date"><Storage global="True"></Storage></Field>
<Field id="7" name="Scan" fieldtype="Normal" datatype="Binary"></Field></ObjectList></FieldCatalog>
<FieldCatalog><BaseTableReference id="131"></BaseTableReference><ObjectList>
<Field id="1" name="Name" fieldtype="Normal" datatype="Text"><Validation><MaximumSize>4294967295</MaximumSize>
</Validation><Storage global="True"></Storage></Field></ObjectList></FieldCatalog></FieldsForTables>
<LayoutCatalog><Layout id="9" name="Zoo" isFolder="True"></Layout>
<Layout id="8" name="List"><TableOccurrenceReference id="1065090"></TableOccurrenceReference></Layout>
<Layout id="7" name="-" isSeparatorItem="True"></Layout>
<Layout id="6" name="Orders"><TableOccurrenceReference id="1065091"></TableOccurrenceReference></Layout>
<Layout id="5" name="--" isFolder="Marker"></Layout><Layout id="4" name="Blank"></Layout></LayoutCatalog>
<ValueListCatalog><ValueList id="2" name="YN"><!--yesNo--></ValueList>
<ValueList id="1" name="Names"><Source value="FromField"></Source><CustomValues><Text>stale</Text></CustomValues>
</ValueList></ValueListCatalog>
<CustomFunctionsCatalog><ObjectList><CustomFunction id="8" name="Text" isFolder="True"></CustomFunction>
<CustomFunction id="7" name="Zip"><Display>Zip ( a ; b )</Display><ObjectList><Parameter name="a"></Parameter>
<Parameter name="b"></Parameter></ObjectList><!--zip--></CustomFunction>
<CustomFunction id="9" name="--" isFolder="Marker"></CustomFunction>
<CustomFunction id="3" name="Add"></CustomFunction></ObjectList></CustomFunctionsCatalog>
<ScriptCatalog><Script id="3" name="Start"></Script><Script id="1" name="Admin" isFolder="True"></Script>
<Script id="2" name="-" isSeparatorItem="True"></Script><Script id="5" name="Reset"></Script>
<Script id="4" name="--" isFolder="Marker"></Script></ScriptCatalog>
<PrivilegeSetsCatalog><ObjectList><PrivilegeSet id="3" name="[Read-Only Access]"></PrivilegeSet>
<PrivilegeSet id="1" name="[Full Access]"></PrivilegeSet></ObjectList></PrivilegeSetsCatalog>
<AccountsCatalog><ObjectList><Account id="2" enable="True"><Authentication><AccountName>Admin</AccountName>
</Authentication><PrivilegeSetReference id="1"></PrivilegeSetReference></Account></ObjectList></AccountsCatalog>
</AddAction><ModifyAction><LayoutCatalog><Layout id="3" name="Old"></Layout></LayoutCatalog></ModifyAction></Structure>
<Metadata><AddAction><Login type="1"><AccountName>Admin</AccountName></Login></AddAction></Metadata></FMSaveAsXML>
)";

struct Change {
  std::string from;
  std::string to;
  std::string_view versions;  ///< that need it
};

void ReplaceAll(std::string& text, std::string_view from, std::string_view to) {
  for (auto at = text.find(from); at != text.npos; at = text.find(from, at + to.size()))
    text.replace(at, from.size(), to);
}

}  // namespace

std::string SampleExport(std::string_view version) {
  const std::string yesNo =
      "<Source value=\"Custom\"></Source><CustomValues><Text><![CDATA[Yes(CR)No]]></Text></CustomValues>";
  const std::string zip = "<Calculation><Text><![CDATA[a + b]]></Text></Calculation>";
  const Change changes[] = {
      {"version=\"2.2.3.4\"", "version=\"" + std::string(version) + "\"", version},
      {"<!--yesNo-->", yesNo, "2.0.0.0 2.2.3.4"},
      {"</ValueListCatalog>",
       "</ValueListCatalog><OptionsForValueLists><ValueList><ValueListReference id=\"2\"></ValueListReference>" +
           yesNo + "</ValueList></OptionsForValueLists>",
       "2.2.2.0"},
      {"<!--zip-->", zip, "2.2.3.4"},
      {"</CustomFunctionsCatalog>",
       "</CustomFunctionsCatalog><CalcsForCustomFunctions><ObjectList><CustomFunctionCalc><CustomFunctionReference "
       "id=\"7\"></CustomFunctionReference>" +
           zip + "</CustomFunctionCalc></ObjectList></CalcsForCustomFunctions>",
       "2.0.0.0 2.2.2.0"},
      {"isFolder=\"Marker\"></CustomFunction>", "></CustomFunction>", "2.0.0.0 2.2.2.0"},
      {"<AccountName>", "<AccountName><INSECURE_TEXT>", "2.2.2.0"},
      {"</AccountName>", "</INSECURE_TEXT></AccountName>", "2.2.2.0"},
      {"<BaseTableSourceReference>", "", "2.0.0.0"},
      {"</BaseTableSourceReference>", "", "2.0.0.0"},
      {"<BaseTableReference id=\"129\" name=\"Orders\"></BaseTableReference>",
       "<TableOccurrenceReference id=\"1065089\"></TableOccurrenceReference>", "2.0.0.0"},
      {"FMSaveAsXML", "FMDynamicTemplate", "2.0.0.0"},
      {"(CR)", "\r", version},
  };
  std::string text(kDocument);
  for (const Change& change : changes) {
    if (change.versions.find(version) != change.versions.npos) ReplaceAll(text, change.from, change.to);
  }
  return text;
}

sim::Solution SampleSolution() {
  sim::Solution solution;
  std::string error;
  if (!sim::ReadSolutionBytes(SampleExport("2.2.3.4"), "Sales.xml", solution, error)) std::abort();
  return solution;
}
