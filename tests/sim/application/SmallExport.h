// Writes small exports that the simulated application can open.
#pragma once

#include <fstream>
#include <sstream>
#include <string>

#include "support/FolderTest.h"
#include "support/Placeholders.h"

/// The XML of steps, one on each line of `text`: its name, then its options, separated by " | "; "//" disables a step.
/// steps.txt has the XML of each step: name, id, and the options by number, {=1} as a formula.
inline std::string Steps(const std::string& text) {
  std::istringstream lines(text);
  std::string steps;
  for (std::string line; std::getline(lines, line);) {
    const bool enabled = !line.starts_with("//");
    std::ifstream forms(DATA "/steps.txt");
    std::string name, id, xml, rest;
    do {
      std::getline(std::getline(std::getline(forms, name, '\t'), id, '\t'), xml);
    } while (forms && !line.substr(enabled ? 0 : 2).starts_with(name));
    rest = line.substr((enabled ? 0 : 2) + name.size());
    for (const std::string option : {"1}", "2}"}) {
      const std::string value = rest.substr(0, rest.find(" | "));
      xml = Replaced(Replaced(xml, "{" + option, value), "{=" + option,
                     "<Calculation><Calculation><Text><![CDATA[" + value + "]]></Text></Calculation></Calculation>");
      rest.erase(0, value.size() + 3);
    }
    while (name.ends_with(' ')) name.pop_back();
    steps += "<Step id=\"" + id + "\" name=\"" + name + "\" enable=\"" + (enabled ? "True" : "False") +
             "\"><ParameterValues>" + xml + "</ParameterValues></Step>";
  }
  return steps;
}

/// What a small file contains besides one table "Orders" with the field "Total".
struct SmallFile {
  std::string name = "Small";
  std::string steps{};                 ///< of its script "Go", as for Steps
  std::string fullAccess = "False";    ///< whether "Go" runs with full access
  std::string privilegeSet = "1";      ///< of its account "Me": 1, full access, or 4, which has no extended privilege
  std::string privilege = "fmplugin";  ///< extended privilege of set 1
};

class SmallExports : public FolderTest {
 protected:
  /// Writes the export and returns its path.
  std::string Write(const SmallFile& file) {
    const std::string path = folder_ + "/" + file.name + ".xml";
    std::ofstream(path) << Filled(Contents(DATA "/Small.xml"), {{"{name}", file.name},
                                                                {"{steps}", Steps(file.steps)},
                                                                {"{fullAccess}", file.fullAccess},
                                                                {"{privilegeSet}", file.privilegeSet},
                                                                {"{privilege}", file.privilege}});
    return path;
  }
};
