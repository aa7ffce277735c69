#include "tests/solution/ExportBuilder.h"

namespace {

std::string Calculation(const FormatVersion& version, const std::string& formula) {
  const char* chunks =
      version.chunkLists ? "<ChunkList hash=\"0\"><Chunk type=\"NoRef\">other</Chunk></ChunkList>" : "";
  return "<Calculation><Text><![CDATA[" + formula + "]]></Text>" + chunks + "</Calculation>";
}

/// In a step a formula is nested twice.
std::string StepFormula(const FormatVersion& version, const std::string& formula) {
  return "<Calculation datatype=\"1\" position=\"0\">" + Calculation(version, formula) + "</Calculation>";
}

std::string Parameter(const std::string& type, const std::string& content) {
  return "<Parameter type=\"" + type + "\">" + content + "</Parameter>";
}

std::string Step(const std::string& id, const std::string& parameters, const std::string& enabled = "True") {
  return "<Step id=\"" + id + "\" enable=\"" + enabled + "\" name=\"step " + id +
         "\"><UUID></UUID><Options>0</Options>" +
         (parameters.empty() ? "" : "<ParameterValues>" + parameters + "</ParameterValues>") + "</Step>\n";
}

std::string Tables(const FormatVersion& version) {
  const std::string contacts = "<BaseTableReference id=\"131\" name=\"Contacts\"></BaseTableReference>";
  const std::string orders = "<BaseTableReference id=\"129\" name=\"Orders\"></BaseTableReference>";
  const auto source = [&](const std::string& reference) {
    if (version.bareTableReferences) return reference;
    return "<BaseTableSourceReference type=\"BaseTableReference\">" + reference + "</BaseTableSourceReference>";
  };
  const std::string catalogTable =
      version.bareTableReferences ? "<TableOccurrenceReference id=\"1065089\"></TableOccurrenceReference>" : orders;
  return R"(<BaseTableCatalog membercount="2"><UUID modifications="9"></UUID>
<BaseTable id="129" name="Orders"><UUID modifications="4">X</UUID></BaseTable>
<BaseTable id="131" name="Contacts"></BaseTable></BaseTableCatalog>
<TableOccurrenceCatalog><TagList></TagList><TableOccurrenceNotes></TableOccurrenceNotes>
<TableOccurrence id="1065089" name="Orders" type="Local">)" +
         source(orders) + R"(</TableOccurrence>
<TableOccurrence id="1065090" name="Größe 😀" type="Local">)" +
         source(contacts) + R"(</TableOccurrence>
<TableOccurrence id="1065091" name="Remote" type="External"><BaseTableSourceReference
 type="ExternalDataSourceReference">)" +
         orders + R"(</BaseTableSourceReference></TableOccurrence>
</TableOccurrenceCatalog>
<FieldsForTables><FieldCatalog><TagList></TagList>)" +
         catalogTable + R"(<ObjectList membercount="4">
<Field id="1" name="A &amp; &lt;B&gt;" fieldtype="Normal" datatype="Text" comment="two&#13;lines"><AutoEnter
 type="Calculated"><Calculated>)" +
         Calculation(version, "not the field's") + R"(</Calculated></AutoEnter>
<Validation><MaximumSize>20</MaximumSize></Validation><Storage index="All" global="True" maxRepetitions="1"></Storage></Field>
<Field id="2" name="Total" datatype="Number" fieldtype="Calculated" comment=""><Validation>
<MaximumSize>4294967295</MaximumSize></Validation><Storage storeCalculationResults="False" index="None"
 global="False" maxRepetitions="3"></Storage>)" +
         Calculation(version, "Quantity\r* a]]]]><![CDATA[>b") + R"(</Field>
<Field id="3" name="Sum" fieldtype="Summary" datatype="Timestamp"><SummaryInfo operation="Total"></SummaryInfo></Field>
<Field id="4" name="Photo" fieldtype="Normal" datatype="Binary"><Storage index="Minimal"></Storage></Field>
</ObjectList></FieldCatalog><FieldCatalog>)" +
         contacts + "<ObjectList membercount=\"0\"></ObjectList></FieldCatalog></FieldsForTables>\n";
}

std::string Lists(const FormatVersion& version) {
  const std::string yesNo =
      "<Source value=\"Custom\"></Source><CustomValues><Text><![CDATA[Yes\rNo]]></Text></CustomValues>";
  const std::string formula = Calculation(version, "a + b");
  std::string text = R"(<LayoutCatalog><Layout id="5" name="Folder" isFolder="True"></Layout>
<Layout id="3" name="List" width="9"><TableOccurrenceReference id="1065090"></TableOccurrenceReference></Layout>
<Layout id="4" name="-" isSeparatorItem="True"></Layout><Layout id="6" name="--" isFolder="Marker"></Layout></LayoutCatalog>
<ValueListCatalog><ValueList id="1" name="YN">)" +
                     (version.separateValueLists ? "" : yesNo) + R"(</ValueList><ValueList id="2" name="From field">
<Source value="FromField"></Source><CustomValues><Text>stale</Text></CustomValues></ValueList></ValueListCatalog>
<CustomFunctionsCatalog><ObjectList>)";
  if (version.functionFolders) text += "<CustomFunction id=\"8\" name=\"Text\" isFolder=\"True\"></CustomFunction>";
  text += R"(<CustomFunction id="7" name="Plus" access="All"><Display>Plus ( a ; b )</Display><ObjectList>
<Parameter name="a"></Parameter><Parameter name="b"></Parameter></ObjectList>)";
  if (version.inlineFunctions) text += formula;
  text += "</CustomFunction><CustomFunction id=\"9\" name=\"--\" isFolder=\"Marker\"></CustomFunction></ObjectList>";
  text += "</CustomFunctionsCatalog>\n";
  if (version.separateValueLists) {
    text += "<OptionsForValueLists><ValueList><ValueListReference id=\"1\"></ValueListReference>" + yesNo +
            "</ValueList></OptionsForValueLists>\n";
  }
  if (!version.inlineFunctions) {
    text +=
        "<CalcsForCustomFunctions><ObjectList><CustomFunctionCalc><CustomFunctionReference id=\"7\">"
        "</CustomFunctionReference>" +
        formula + "</CustomFunctionCalc></ObjectList></CalcsForCustomFunctions>\n";
  }
  return text;
}

std::string Scripts(const FormatVersion& version) {
  const auto formula = [&](const std::string& text) { return StepFormula(version, text); };
  const std::string collapsed = Parameter("Boolean", "<Boolean type=\"Collapsed\" value=\"False\"></Boolean>");
  return R"(<ScriptCatalog><Script id="3" name="Admin" isFolder="True"></Script>
<Script id="1" name="Start"><Options hidden="False" runwithfullaccess="True">0</Options></Script>
<Script id="4" name="-" isSeparatorItem="True"></Script><Script id="5" name="--" isFolder="Marker"></Script></ScriptCatalog>
<StepsForScripts><Script><ScriptReference id="1" name="Start"></ScriptReference><ObjectList>)" +
         Step("89", Parameter("Comment", "<Comment value=\"one&#13;two\"></Comment>")) +
         Step("89", Parameter("Comment", "<Comment></Comment>")) +
         Step("141",
              Parameter("Variable", "<value>" + formula("1 + 1") + "</value><Name value=\"$x\"></Name><repetition>" +
                                        formula("2") + "</repetition>")) +
         Step("68", collapsed + Parameter("Calculation", formula("$x = 2"))) +
         Step("125", Parameter("Calculation", formula("$x = 3")), "False") + Step("69", collapsed + collapsed) +
         Step("70", "") +
         Step("62", Parameter("Options", "<Options type=\"Dauer (Sekunden): \">" + formula("5") + "</Options>")) +
         Step("3",
              Parameter("Calculation", formula("Get ( WindowName )")) +
                  Parameter("UniversalPathList",
                            "<UniversalPathList><ObjectList><Location>$path</Location><Location><![CDATA[file:x.xml]]>"
                            "</Location></ObjectList></UniversalPathList>")) +
         Step("87", Parameter("Title", formula("\"T\"")) + Parameter("Message", formula("\"M\"")) +
                        "<Parameter type=\"Button1\" value=\"OK\"></Parameter>") +
         Step("1", Parameter("Parameter", Parameter("Parameter", formula("not kept")))) +
         Step("103", Parameter("Calculation", formula("$x"))) + "</ObjectList></Script></StepsForScripts>\n";
}

std::string AccountName(const FormatVersion& version, const std::string& name) {
  return "<AccountName>" + (version.insecureAccountNames ? "<INSECURE_TEXT>" + name + "</INSECURE_TEXT>" : name) +
         "</AccountName>";
}

std::string Security(const FormatVersion& version) {
  return R"(<PrivilegeSetsCatalog><ObjectList><PrivilegeSet id="1" name="[Voller Zugriff]"></PrivilegeSet>
<PrivilegeSet id="3" name="[Read-Only Access]"></PrivilegeSet></ObjectList></PrivilegeSetsCatalog>
<ExtendedPrivilegesCatalog><ObjectList><ExtendedPrivilege id="3" name="fmapp"><ObjectList>
<PrivilegeSetReference id="1"></PrivilegeSetReference><PrivilegeSetReference id="3"></PrivilegeSetReference></ObjectList>
</ExtendedPrivilege><ExtendedPrivilege id="11" name="fmplugin"></ExtendedPrivilege></ObjectList></ExtendedPrivilegesCatalog>
<AccountsCatalog><ObjectList><Account id="1" enable="False"><Authentication>)" +
         AccountName(version, "[Guest]") +
         R"(</Authentication><PrivilegeSetReference id="3"></PrivilegeSetReference></Account>
<Account id="2" enable="True"><Authentication>)" +
         AccountName(version, "Admin") +
         R"(</Authentication><PrivilegeSetReference id="1"></PrivilegeSetReference></Account>
</ObjectList></AccountsCatalog>)";
}

}  // namespace

std::string BuildExport(const FormatVersion& version) {
  const std::string root = version.bareTableReferences ? "FMDynamicTemplate" : "FMSaveAsXML";
  return "<?xml version=\"1.0\"?>\n<" + root + " Source=\"20.1\" version=\"" + version.number +
         "\" File=\"Sales.v2.FMP12\"><Structure><AddAction>\n" + Tables(version) + Lists(version) + Scripts(version) +
         Security(version) +
         R"(</AddAction><ModifyAction><LayoutCatalog><Layout id="3" name="List"></Layout></LayoutCatalog>
</ModifyAction></Structure><Metadata><AddAction><Login type="1">)" +
         AccountName(version, "Admin") +
         "</Login><Defaults><LayoutReference id=\"3\"></LayoutReference></Defaults></AddAction>" + "</Metadata></" +
         root + ">\n";
}

const std::string_view kExportedDesign =
    R"(file Sales.v2.FMP12, Sales.v2, saved by 20.1, login Admin, layout 3
table 129 Orders, 4 modifications
  field 1 A & <B> normal text global indexed max 20, comment two\rlines
  field 2 Total calculated number unstored 3 repetitions = Quantity\r* a]]>b
  field 3 Sum summary timestamp
  field 4 Photo normal container indexed
table 131 Contacts, 0 modifications
occurrence 1065089 Orders of 129
occurrence 1065090 Größe 😀 of 131
occurrence 1065091 Remote of none
layout folder 5 Folder
layout item 3 List of 1065090
layout separator 4 -
layout end 6 --
script folder 3 Admin
script item 1 Start with full access
  step 89 step 89: one\rtwo
  step 89 step 89:
  step 141 step 141: $x [2] = 1 + 1
  step 68 step 68: = $x = 2
  step 125 step 125 (disabled): = $x = 3
  step 69 step 69:
  step 70 step 70:
  step 62 step 62: = 5
  step 3 step 3: = Get ( WindowName ) to $path to file:x.xml
  step 87 step 87: title "T" = "M"
  step 1 step 1:
  step 103 step 103: = $x
script separator 4 -
script end 5 --
value list 1 YN: Yes\rNo
value list 2 From field:
function Plus ( a b ) = a + b
privilege set 1 [Voller Zugriff] fmapp
privilege set 3 [Read-Only Access] fmapp
account 1 [Guest] (disabled) set 3
account 2 Admin set 1
)";
