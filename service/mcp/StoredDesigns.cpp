#include "mcp/StoredDesigns.h"

#include <stdexcept>

#include "design/DesignReader.h"
#include "designs/DesignJson.h"
#include "designs/OpenDesign.h"

namespace service::mcp {

using solution::Design;
using solution::Element;

std::shared_ptr<const OpenedDesign> OpenStored(const Call& call, const std::string& name) {
  static DesignCache cache;
  DesignStore history = OpenHistory(call.options().Folder());
  const StoredDesign stored = FindDesign(history, name);
  return cache.Open(stored.id, stored.bytes, [&] {
    std::string error;
    auto design = solution::ReadDesignBytes(history.Content(stored.id), "design " + std::to_string(stored.id), error);
    if (design == nullptr) throw std::runtime_error(error);
    return design;
  });
}

bool HasKind(const Element& element, const std::string& kind) {
  return kind.empty() || NamesOf(element.kind).word == kind;
}

std::vector<const Element*> Named(const Design& design, const std::string& name, const std::string& kind) {
  auto elements = FindElements(design, name);
  std::erase_if(elements, [&](const Element* element) { return !HasKind(*element, kind); });
  if (elements.empty()) {
    throw std::runtime_error("the design has no " + (kind.empty() ? "element" : kind) + " named " + name +
                             "; search finds names by a part of them");
  }
  return elements;
}

Json Summary(const Design& design, const Element& element) {
  const Json all = DescribeElementIn(design, element);
  Json json;
  for (const char* name : {"key", "kind", "name", "parent", "detail"}) json[name] = all.at(name);
  return json;
}

}  // namespace service::mcp
