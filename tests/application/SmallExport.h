// Small exports, written as files for the simulated application to open.
#pragma once

#include <fstream>
#include <string>

#include "tests/support/FolderTest.h"

/// The formula parameter of a step.
inline std::string Formula(const std::string& formula) {
  return "<Calculation datatype=\"1\" position=\"0\"><Calculation><Text><![CDATA[" + formula +
         "]]></Text></Calculation></Calculation>";
}

inline std::string Parameter(const std::string& type, const std::string& contents) {
  return "<Parameter type=\"" + type + "\">" + contents + "</Parameter>";
}

inline std::string Step(int id, const std::string& name, const std::string& parameters = "", bool enabled = true) {
  return "<Step index=\"0\" id=\"" + std::to_string(id) + "\" name=\"" + name + "\" enable=\"" +
         (enabled ? "True" : "False") + "\"><ParameterValues membercount=\"1\">" + parameters +
         "</ParameterValues></Step>";
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

/// What a small file holds besides one table "Orders" with the fields "ID" and "Total".
struct SmallFile {
  std::string name = "Small";
  std::string steps{};               ///< of its script "Go"
  std::string fullAccess = "False";  ///< whether "Go" runs with full access
  std::string language = "English";
  int privilegeSet = 1;  ///< of its account "Me"
  std::string privileges =
      "<ExtendedPrivilege id=\"11\" name=\"fmplugin\"><ObjectList><PrivilegeSetReference id=\"1\" "
      "name=\"[Full Access]\"></PrivilegeSetReference></ObjectList></ExtendedPrivilege>";
};

class SmallExports : public FolderTest {
 protected:
  /// Writes the export and returns its path.
  std::string Write(const SmallFile& file) {
    const std::string path = folder_ + "/" + file.name + ".xml";
    std::ofstream(path)
        << "<?xml version=\"1.0\"?>\n<FMSaveAsXML version=\"2.2.3.0\" Source=\"22.0.1\" File=\"" << file.name
        << ".fmp12\" locale=\"" << file.language
        << "\"><Structure membercount=\"1\"><AddAction membercount=\"9\">"
           "<BaseTableCatalog><BaseTable id=\"129\" name=\"Orders\"></BaseTable></BaseTableCatalog>"
           "<TableOccurrenceCatalog><TableOccurrence id=\"1065089\" name=\"Orders\" type=\"Local\">"
           "<BaseTableSourceReference type=\"BaseTableReference\"><BaseTableReference id=\"129\" name=\"Orders\">"
           "</BaseTableReference></BaseTableSourceReference></TableOccurrence></TableOccurrenceCatalog>"
           "<FieldsForTables><FieldCatalog><BaseTableReference id=\"129\" name=\"Orders\"></BaseTableReference>"
           "<ObjectList><Field id=\"1\" name=\"ID\" fieldtype=\"Normal\" datatype=\"Text\"></Field><Field id=\"2\" "
           "name=\"Total\" fieldtype=\"Normal\" datatype=\"Number\"></Field></ObjectList></FieldCatalog>"
           "</FieldsForTables><LayoutCatalog><Layout id=\"1\" name=\"List\"><TableOccurrenceReference id=\"1065089\" "
           "name=\"Orders\"></TableOccurrenceReference></Layout></LayoutCatalog>"
           "<ScriptCatalog><Script id=\"1\" name=\"Go\"><Options runwithfullaccess=\""
        << file.fullAccess
        << "\">0</Options></Script></ScriptCatalog><StepsForScripts><Script><ScriptReference id=\"1\" name=\"Go\">"
           "</ScriptReference><ObjectList>"
        << file.steps
        << "</ObjectList></Script></StepsForScripts><PrivilegeSetsCatalog><ObjectList><PrivilegeSet id=\"1\" "
           "name=\"[Full Access]\"></PrivilegeSet><PrivilegeSet id=\"4\" name=\"Clerk\"></PrivilegeSet></ObjectList>"
           "</PrivilegeSetsCatalog><ExtendedPrivilegesCatalog><ObjectList>"
        << file.privileges
        << "</ObjectList></ExtendedPrivilegesCatalog><AccountsCatalog><ObjectList><Account id=\"2\" kind=\"0\" "
           "enable=\"True\"><Authentication><AccountName>Me</AccountName></Authentication><PrivilegeSetReference id=\""
        << file.privilegeSet
        << "\" name=\"\"></PrivilegeSetReference></Account></ObjectList></AccountsCatalog></AddAction></Structure>"
           "<Metadata><AddAction><Login type=\"1\"><AccountName>Me</AccountName></Login></AddAction></Metadata>"
           "</FMSaveAsXML>\n";
    return path;
  }
};
