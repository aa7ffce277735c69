#include "output/Graph.h"

#include <algorithm>

#include "canonical/Naming.h"
#include "export/Xml.h"

namespace solution {
namespace {

struct Sign {
  std::string_view type, text;
};
constexpr Sign kSigns[] = {
    {"Equal", "="},       {"NotEqual", "≠"},           {"LessThan", "<"},         {"LessThanOrEqual", "≤"},
    {"GreaterThan", ">"}, {"GreaterThanOrEqual", "≥"}, {"CartesianProduct", "×"},
};

std::string SignOf(XmlNode predicate) {
  const std::string_view type = Attribute(predicate, "type");
  const auto sign =
      std::find_if(std::begin(kSigns), std::end(kSigns), [type](const Sign& known) { return known.type == type; });
  return std::string(sign == std::end(kSigns) ? type : sign->text);
}

std::string FieldIn(const Design& design, XmlNode side) {
  const auto target = Resolve(design, side.child("FieldReference"));
  return target ? TargetName(design, *target, NameOnly) : std::string();
}

}  // namespace

std::vector<Predicate> PredicatesOf(const Design& design, const Element& relationship) {
  std::vector<Predicate> predicates;
  for (const XmlNode node : relationship.nodes.front().child("JoinPredicateList").children("JoinPredicate")) {
    predicates.push_back(
        {FieldIn(design, node.child("LeftField")), SignOf(node), FieldIn(design, node.child("RightField"))});
  }
  return predicates;
}

}  // namespace solution
