// One export and what other versions write differently.
#include "tests/solution/ExportBuilder.h"

namespace {

// As 2.2.3.4 writes it, but for a few marks: (CR) for a carriage return, {...} for the formula of a step, and comments
// where the contents of a value list and the formula of a custom function stand in some versions.
constexpr std::string_view kDocument = R"(<?xml version="1.0"?>
<FMSaveAsXML Source="20.1" version="2.2.3.4" File="Sales.v2.FMP12"><Structure><AddAction>
<BaseTableCatalog><SortOrder>1</SortOrder><UUID modifications="9"></UUID>
<BaseTable id="129" name="Orders"><UUID modifications="4">X</UUID></BaseTable>
<BaseTable id="131" name="Contacts"></BaseTable></BaseTableCatalog>
<TableOccurrenceCatalog><TagList></TagList><TableOccurrenceNotes></TableOccurrenceNotes>
<TableOccurrence id="1065089" name="Orders" type="Local"><BaseTableSourceReference>
<BaseTableReference id="129"></BaseTableReference></BaseTableSourceReference></TableOccurrence>
<TableOccurrence id="1065090" name="Größe 😀" type="Local"><BaseTableSourceReference>
<BaseTableReference id="131"></BaseTableReference></BaseTableSourceReference></TableOccurrence>
<TableOccurrence id="1065091" name="Remote" type="External"><BaseTableSourceReference>
<BaseTableReference id="129"></BaseTableReference></BaseTableSourceReference></TableOccurrence></TableOccurrenceCatalog>
<FieldsForTables><FieldCatalog><TagList></TagList>
<BaseTableReference id="129" name="Orders"></BaseTableReference><ObjectList membercount="4">
<Field id="1" name="A &amp; &lt;B&gt;" fieldtype="Normal" datatype="Text" comment="two&#13;lines">
<AutoEnter type="Calculated"><Calculated><Calculation><Text>not the field's</Text></Calculation></Calculated></AutoEnter>
<Validation><MaximumSize>20</MaximumSize></Validation>
<Storage index="All" global="True" maxRepetitions="1"></Storage></Field>
<Field id="2" name="Total" datatype="Number" fieldtype="Calculated">
<Validation><MaximumSize>4294967295</MaximumSize></Validation>
<Storage storeCalculationResults="False" index="None" global="False" maxRepetitions="3"></Storage>
<Calculation><Text><![CDATA[Quantity(CR)* a]]]]><![CDATA[>b]]></Text></Calculation></Field>
<Field id="3" name="Sum" fieldtype="Summary" datatype="Timestamp"><SummaryInfo></SummaryInfo></Field>
<Field id="4" name="Photo" fieldtype="Normal" datatype="Binary"><Storage index="Minimal"></Storage></Field>
</ObjectList></FieldCatalog>
<FieldCatalog><BaseTableReference id="131"></BaseTableReference><ObjectList></ObjectList></FieldCatalog></FieldsForTables>
<LayoutCatalog><Layout id="5" name="Folder" isFolder="True"></Layout>
<Layout id="3" name="List"><TableOccurrenceReference id="1065090"></TableOccurrenceReference></Layout>
<Layout id="4" name="-" isSeparatorItem="True"></Layout><Layout id="6" name="--" isFolder="Marker"></Layout></LayoutCatalog>
<ValueListCatalog><ValueList id="1" name="YN"><!--yesNo--></ValueList>
<ValueList id="2" name="From field"><Source value="FromField"></Source><CustomValues><Text>stale</Text></CustomValues>
</ValueList></ValueListCatalog>
<CustomFunctionsCatalog><ObjectList><CustomFunction id="8" name="Text" isFolder="True"></CustomFunction>
<CustomFunction id="7" name="Plus"><Display>Plus ( a ; b )</Display><ObjectList><Parameter name="a"></Parameter>
<Parameter name="b"></Parameter></ObjectList><!--plus--></CustomFunction>
<CustomFunction id="9" name="--" isFolder="Marker"></CustomFunction></ObjectList></CustomFunctionsCatalog>
<ScriptCatalog><Script id="3" name="Admin" isFolder="True"></Script>
<Script id="1" name="Start"><Options hidden="False" runwithfullaccess="True">0</Options></Script>
<Script id="4" name="-" isSeparatorItem="True"></Script><Script id="5" name="--" isFolder="Marker"></Script></ScriptCatalog>
<StepsForScripts><Script><ScriptReference id="1"></ScriptReference><ObjectList>
<Step id="89" enable="True" name="#"><ParameterValues>
<Parameter type="Comment"><Comment value="1&#13;2"></Comment></Parameter></ParameterValues></Step>
<Step id="89" enable="True" name="#"><ParameterValues>
<Parameter type="Comment"><Comment></Comment></Parameter></ParameterValues></Step>
<Step id="141" enable="True" name="Set"><ParameterValues><Parameter type="Variable">
<value>{1 + 1}</value><Name value="$x"></Name><repetition>{2}</repetition></Parameter></ParameterValues></Step>
<Step id="68" enable="True" name="If"><ParameterValues><Parameter type="Boolean"><Boolean></Boolean></Parameter>
<Parameter type="Calculation">{$x}</Parameter></ParameterValues></Step>
<Step id="125" enable="False" name="Else If"><ParameterValues>
<Parameter type="Calculation">{$y}</Parameter></ParameterValues></Step>
<Step id="70" enable="True" name="End If"><UUID></UUID></Step>
<Step id="62" enable="True" name="Pause"><ParameterValues>
<Parameter type="Options"><Options type="Dauer (Sekunden): ">{5}</Options></Parameter></ParameterValues></Step>
<Step id="3" enable="True" name="Save"><ParameterValues><Parameter type="Calculation">{$window}</Parameter>
<Parameter type="UniversalPathList"><UniversalPathList><ObjectList><Location>$path</Location>
<Location><![CDATA[file:x.xml]]></Location></ObjectList></UniversalPathList></Parameter></ParameterValues></Step>
<Step id="87" enable="True" name="Dialog"><ParameterValues><Parameter type="Title">{"T"}</Parameter>
<Parameter type="Message">{"M"}</Parameter><Parameter type="Button1" value="OK"></Parameter></ParameterValues></Step>
<Step id="1" enable="True" name="Perform"><ParameterValues>
<Parameter type="Calculation">{not kept}</Parameter></ParameterValues></Step>
<Step id="103" enable="True" name="Exit"><ParameterValues>
<Parameter type="Calculation">{$x}</Parameter></ParameterValues></Step></ObjectList></Script></StepsForScripts>
<PrivilegeSetsCatalog><ObjectList><PrivilegeSet id="1" name="[Voller Zugriff]"></PrivilegeSet>
<PrivilegeSet id="3" name="[Read-Only Access]"></PrivilegeSet></ObjectList></PrivilegeSetsCatalog>
<ExtendedPrivilegesCatalog><ObjectList><ExtendedPrivilege id="3" name="fmapp"><ObjectList>
<PrivilegeSetReference id="1"></PrivilegeSetReference><PrivilegeSetReference id="3"></PrivilegeSetReference></ObjectList>
</ExtendedPrivilege><ExtendedPrivilege id="11" name="fmplugin"></ExtendedPrivilege></ObjectList></ExtendedPrivilegesCatalog>
<AccountsCatalog><ObjectList><Account id="1" enable="False"><Authentication><AccountName>[Guest]</AccountName>
</Authentication><PrivilegeSetReference id="3"></PrivilegeSetReference></Account>
<Account id="2" enable="True"><Authentication><AccountName>Admin</AccountName></Authentication>
<PrivilegeSetReference id="1"></PrivilegeSetReference></Account></ObjectList></AccountsCatalog></AddAction>
<ModifyAction><LayoutCatalog><Layout id="3" name="List"></Layout></LayoutCatalog></ModifyAction></Structure>
<Metadata><AddAction><Login type="1"><AccountName>Admin</AccountName></Login>
<Defaults><LayoutReference id="3"></LayoutReference></Defaults></AddAction></Metadata></FMSaveAsXML>
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

std::string BuildExport(std::string_view version) {
  const std::string yesNo =
      "<Source value=\"Custom\"></Source><CustomValues><Text><![CDATA[Yes(CR)No]]></Text></CustomValues>";
  const std::string plus = "<Calculation><Text><![CDATA[a + b]]></Text></Calculation>";
  const Change changes[] = {
      {"version=\"2.2.3.4\"", "version=\"" + std::string(version) + "\"", version},
      {"<!--yesNo-->", yesNo, "2.0.0.0 2.1.0.0 2.2.0.0 2.2.1.0 2.2.3.4 2.3.0.0"},
      {"</ValueListCatalog>",
       "</ValueListCatalog><OptionsForValueLists><ValueList><ValueListReference id=\"1\"></ValueListReference>" +
           yesNo + "</ValueList></OptionsForValueLists>",
       "2.2.2.0 2.2.3.0"},
      {"<!--plus-->", plus, "2.2.3.4 2.3.0.0"},
      {"</CustomFunctionsCatalog>",
       "</CustomFunctionsCatalog><CalcsForCustomFunctions><ObjectList><CustomFunctionCalc><CustomFunctionReference "
       "id=\"7\"></CustomFunctionReference>" +
           plus + "</CustomFunctionCalc></ObjectList></CalcsForCustomFunctions>",
       "2.0.0.0 2.1.0.0 2.2.0.0 2.2.1.0 2.2.2.0 2.2.3.0"},
      {"<CustomFunction id=\"8\" name=\"Text\" isFolder=\"True\"></CustomFunction>", "",
       "2.0.0.0 2.1.0.0 2.2.0.0 2.2.1.0 2.2.2.0"},
      {"isFolder=\"Marker\"></CustomFunction>", "></CustomFunction>", "2.0.0.0 2.1.0.0 2.2.0.0 2.2.1.0 2.2.2.0"},
      {"<Login type=\"1\"><AccountName>Admin</AccountName>",
       "<Login type=\"1\"><UserName><INSECURE_TEXT>Admin</INSECURE_TEXT></UserName>", "2.1.0.0 2.2.0.0 2.2.1.0"},
      {"<AccountName>", "<AccountName><INSECURE_TEXT>", "2.1.0.0 2.2.0.0 2.2.1.0 2.2.2.0"},
      {"</AccountName>", "</INSECURE_TEXT></AccountName>", "2.1.0.0 2.2.0.0 2.2.1.0 2.2.2.0"},
      {"<BaseTableSourceReference>", "", "2.0.0.0"},
      {"</BaseTableSourceReference>", "", "2.0.0.0"},
      {"<BaseTableReference id=\"129\" name=\"Orders\"></BaseTableReference>",
       "<TableOccurrenceReference id=\"1065089\"></TableOccurrenceReference>", "2.0.0.0"},
      {"FMSaveAsXML", "FMDynamicTemplate", "2.0.0.0"},
      {"{", "<Calculation position=\"1\"><Calculation><Text><![CDATA[", version},
      {"}", "]]></Text></Calculation></Calculation>", version},
      {"</Text></Calculation>", "</Text><ChunkList><Chunk>x</Chunk></ChunkList></Calculation>", "2.2.0.0 2.2.1.0"},
      {"(CR)", "\r", version},
  };
  std::string text(kDocument);
  for (const Change& change : changes) {
    if (change.versions.find(version) != change.versions.npos) ReplaceAll(text, change.from, change.to);
  }
  return text;
}

const std::string_view kExportedDesign = R"(file|Sales.v2.FMP12|Sales.v2|20.1|Admin|3
table|129|Orders|4
field|1|A & <B>|0|0|1|1|1|1|20||two\rlines
field|2|Total|1|1|0|0|0|3|-|Quantity\r* a]]>b|
field|3|Sum|2|4|0|1|0|1|-||
field|4|Photo|0|5|0|1|1|1|-||
table|131|Contacts|0
occurrence|1065089|Orders|129
occurrence|1065090|Größe 😀|131
occurrence|1065091|Remote|-
layout|5|Folder|1|-
layout|3|List|0|1065090
layout|4|-|3|-
layout|6|--|2|-
script|3|Admin|1|0
script|1|Start|0|1
step|89|#|1|1\r2||||
step|89|#|1|||||
step|141|Set|1|$x|1 + 1|2||
step|68|If|1||$x|||
step|125|Else If|0||$y|||
step|70|End If|1|||||
step|62|Pause|1||5|||
step|3|Save|1||$window|||$path, file:x.xml
step|87|Dialog|1||"M"||"T"|
step|1|Perform|1|||||
step|103|Exit|1||$x|||
script|4|-|3|0
script|5|--|2|0
value list|1|YN|Yes\rNo
value list|2|From field|
function|Plus|a, b|a + b
privilege set|1|[Voller Zugriff]|fmapp
privilege set|3|[Read-Only Access]|fmapp
account|1|[Guest]|0|3
account|2|Admin|1|1
)";
