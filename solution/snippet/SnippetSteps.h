// Script steps as FileMaker writes them on the clipboard. Exports have another form.
#pragma once

#include <string>
#include <vector>

#include "canonical/Steps.h"
#include "export/XmlTree.h"

namespace solution {

/// One step as a readable line like those of an export: "Set Field [ Orders::Status ; "Open" ]". Passwords are not
/// shown.
std::string SnippetStepText(XmlNode step);

/// The steps directly inside `parent`.
std::vector<StepLine> SnippetSteps(XmlNode parent);

/// A field as a snippet refers to it: `Table::Field`, or the name of a variable.
std::string SnippetFieldName(XmlNode field);

}  // namespace solution
