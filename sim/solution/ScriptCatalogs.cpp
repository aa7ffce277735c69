// Scripts and script steps of an export.
#include <string_view>
#include <unordered_map>

#include "solution/Catalogs.h"
#include "solution/ExportXml.h"

namespace sim {
namespace {

using std::operator""sv;

solution::XmlNode Parameter(solution::XmlNode step, const char* type) {
  for (const solution::XmlNode parameter : step.child("ParameterValues").children("Parameter")) {
    if (parameter.attribute("type").value() == type) return parameter;
  }
  return {};
}

/// The parameters of the steps that the simulated host runs; those of the others are not kept.
void ReadParameters(solution::XmlNode element, ScriptStep& step) {
  switch (step.id) {
    case kStepSetVariable: {
      const solution::XmlNode variable = Parameter(element, "Variable");
      step.text = xml::Text(variable.child("Name").attribute("value"));
      step.calculation = xml::Formula(variable.child("value"));
      step.repetition = xml::Formula(variable.child("repetition"));
      return;
    }
    case kStepIf:
    case kStepElseIf:
    case kStepExitScript:
      step.calculation = xml::Formula(Parameter(element, "Calculation"));
      return;
    case kStepSetErrorCapture:
      step.on = xml::IsTrue(Parameter(element, "Boolean").child("Boolean").attribute("value"));
      return;
    case kStepPause:
      step.calculation = xml::Formula(Parameter(element, "Options").child("Options"));
      return;
    case kStepShowDialog:
      step.title = xml::Formula(Parameter(element, "Title"));
      step.calculation = xml::Formula(Parameter(element, "Message"));
      return;
    case kStepSaveAsXml: {
      step.calculation = xml::Formula(Parameter(element, "Calculation"));
      const solution::XmlNode paths = Parameter(element, "UniversalPathList").child("UniversalPathList");
      for (const solution::XmlNode location : paths.child("ObjectList").children("Location")) {
        step.destinations.push_back(xml::Text(location));
      }
      return;
    }
  }
}

ScriptStep ReadStep(solution::XmlNode element) {
  ScriptStep step;
  step.id = xml::Id(element);
  step.name = xml::Name(element);
  step.enabled = element.attribute("enable").value() != "False"sv;
  ReadParameters(element, step);
  return step;
}

}  // namespace

void ReadScripts(solution::XmlNode design, Solution& solution) {
  std::unordered_map<int, solution::XmlNode> stepLists;
  for (const solution::XmlNode element : design.child("StepsForScripts").children("Script")) {
    stepLists[xml::ReferencedId(element, "ScriptReference")] = element.child("ObjectList");
  }
  for (const solution::XmlNode element : xml::Entries(design.child("ScriptCatalog"), "Script")) {
    Script& script = solution.scripts.emplace_back();
    script.id = xml::Id(element);
    script.name = xml::Name(element);
    script.kind = xml::Kind(element);
    script.runWithFullAccess = xml::IsTrue(element.child("Options").attribute("runwithfullaccess"));
    for (const solution::XmlNode step : stepLists[script.id].children("Step")) script.steps.push_back(ReadStep(step));
  }
}

}  // namespace sim
