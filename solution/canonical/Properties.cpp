#include "canonical/Properties.h"

#include <algorithm>

#include "canonical/Flatten.h"
#include "canonical/Indent.h"
#include "canonical/Steps.h"
#include "export/Xml.h"

namespace solution {
namespace {

Property Steps(const Design& design, const Element& script, const Naming& naming) {
  const auto lines = StepLines(design, script, naming);
  Property steps{"steps", JoinLines(lines), {}, {}, "steps"};
  for (const StepLine& line : lines) steps.key += line.details + '\n';
  return steps;
}

// Other catalogs repeat parts of a definition.
void AppendNew(std::vector<Property>& properties, std::vector<Property> more) {
  const std::size_t known = properties.size();
  for (Property& property : more) {
    const auto isSame = [&property](const Property& other) {
      return other.name == property.name && other.compared() == property.compared();
    };
    const auto end = properties.begin() + static_cast<std::ptrdiff_t>(known);
    if (std::none_of(properties.begin(), end, isSame)) properties.push_back(std::move(property));
  }
}

std::string Heading(const Element& element) {
  std::string heading(NamesOf(element.kind).title);
  heading += ": " + DisplayName(element) + '\n';
  if (element.kind != Kind::kFile) heading += "id: " + std::to_string(element.id) + '\n';
  if (!element.uuid.empty()) heading += "UUID: " + std::string(element.uuid) + '\n';
  return heading + '\n';
}

}  // namespace

std::vector<Property> PropertiesOf(const Design& design, const Element& element, const Naming& naming) {
  std::vector<Property> properties;
  for (const XmlNode node : element.nodes) {
    if (element.kind == Kind::kScript && node != element.nodes.front()) break;  // its steps
    std::vector<Property> part;
    Flatten(design, element, node, naming, part);
    AppendNew(properties, std::move(part));
  }
  if (element.kind == Kind::kScript) properties.push_back(Steps(design, element, naming));
  return properties;
}

std::string CanonicalText(const Design& design, const Element& element) {
  std::string text = Heading(element);
  for (const Property& property : PropertiesOf(design, element)) {
    if (property.name == "steps") {
      text += '\n' + property.value;
    } else if (property.value.find('\n') != std::string_view::npos) {
      text += property.name + ":\n    " + Indented(property.value, kIndent) + '\n';
    } else {
      text += property.name + ": " + property.value + '\n';
    }
  }
  return text;
}

}  // namespace solution
