// Small exports, written as files for the simulated application to open.
#pragma once

#include <fstream>
#include <string>

#include "support/FolderTest.h"

inline std::string Formula(const std::string& formula) {
  return "<Calculation><Calculation><Text><![CDATA[" + formula + "]]></Text></Calculation></Calculation>";
}

inline std::string Parameter(const std::string& type, const std::string& contents) {
  return "<Parameter type=\"" + type + "\">" + contents + "</Parameter>";
}

inline std::string Step(int id, const std::string& name, const std::string& parameters = "", bool enabled = true) {
  return "<Step id=\"" + std::to_string(id) + "\" name=\"" + name + "\" enable=\"" + (enabled ? "True" : "False") +
         "\"><ParameterValues>" + parameters + "</ParameterValues></Step>";
}

inline std::string SetVariable(const std::string& name, const std::string& formula, bool enabled = true) {
  return Step(141, "Set Variable",
              Parameter("Variable", "<value>" + Formula(formula) + "</value><Name value=\"" + name +
                                        "\"></Name><repetition>" + Formula("1") + "</repetition>"),
              enabled);
}

inline std::string If(const std::string& formula, bool enabled = true) {
  return Step(68, "If", Parameter("Calculation", Formula(formula)), enabled);
}
inline std::string ElseIf(const std::string& formula) {
  return Step(125, "Else If", Parameter("Calculation", Formula(formula)));
}
inline std::string Else() { return Step(69, "Else"); }
inline std::string EndIf() { return Step(70, "End If"); }
inline std::string Exit(const std::string& formula) {
  return Step(103, "Exit Script", Parameter("Calculation", Formula(formula)));
}

/// What a small file holds besides one table "Orders" with the field "Total".
struct SmallFile {
  std::string name = "Small";
  std::string steps{};                 ///< of its script "Go"
  std::string fullAccess = "False";    ///< whether "Go" runs with full access
  std::string privilegeSet = "1";      ///< of its account "Me": 1, full access, or 4, which has no extended privilege
  std::string privilege = "fmplugin";  ///< extended privilege of set 1
};

class SmallExports : public FolderTest {
 protected:
  /// Writes the export and returns its path.
  std::string Write(const SmallFile& file) {
    const std::string path = folder_ + "/" + file.name + ".xml";
    std::ofstream(path) << R"(<FMSaveAsXML version="2.2.3.0" File=")" << file.name
                        << R"(.fmp12" locale="English"><Structure><AddAction>
<BaseTableCatalog><BaseTable id="129" name="Orders"></BaseTable></BaseTableCatalog>
<TableOccurrenceCatalog><TableOccurrence id="1065089" name="Orders"><BaseTableSourceReference>
<BaseTableReference id="129"></BaseTableReference></BaseTableSourceReference></TableOccurrence></TableOccurrenceCatalog>
<FieldsForTables><FieldCatalog><BaseTableReference id="129"></BaseTableReference><ObjectList>
<Field id="2" name="Total" fieldtype="Normal" datatype="Number"></Field></ObjectList></FieldCatalog></FieldsForTables>
<LayoutCatalog><Layout id="3" name="Else"></Layout><Layout id="1" name="List">
<TableOccurrenceReference id="1065089"></TableOccurrenceReference></Layout></LayoutCatalog>
<ScriptCatalog><Script id="1" name="Go"><Options runwithfullaccess=")"
                        << file.fullAccess << R"("></Options></Script></ScriptCatalog>
<StepsForScripts><Script><ScriptReference id="1"></ScriptReference><ObjectList>)"
                        << file.steps << R"(</ObjectList></Script></StepsForScripts>
<PrivilegeSetsCatalog><ObjectList><PrivilegeSet id="1" name="[Full Access]"></PrivilegeSet>
<PrivilegeSet id="4" name="Clerk"></PrivilegeSet></ObjectList></PrivilegeSetsCatalog>
<ExtendedPrivilegesCatalog><ObjectList><ExtendedPrivilege id="11" name=")"
                        << file.privilege << R"("><ObjectList>
<PrivilegeSetReference id="1"></PrivilegeSetReference></ObjectList></ExtendedPrivilege></ObjectList>
</ExtendedPrivilegesCatalog><AccountsCatalog><ObjectList>
<Account id="1" enable="False"><Authentication><AccountName>[Guest]</AccountName></Authentication>
<PrivilegeSetReference id="1"></PrivilegeSetReference></Account>
<Account id="2" enable="True"><Authentication><AccountName>Me</AccountName></Authentication>
<PrivilegeSetReference id=")"
                        << file.privilegeSet << R"("></PrivilegeSetReference></Account></ObjectList></AccountsCatalog>
</AddAction></Structure><Metadata><AddAction><Login type="1"><AccountName>Me</AccountName></Login>
<Defaults><LayoutReference id="1"></LayoutReference></Defaults></AddAction></Metadata></FMSaveAsXML>)";
    return path;
  }
};
