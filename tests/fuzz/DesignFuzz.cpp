// Any bytes are either a design or refused with one line. A design can be shown, searched for references, and compared
// with itself without changes.
#include "canonical/Properties.h"
#include "changes/Changes.h"
#include "design/DesignReader.h"
#include "fuzz/Fuzz.h"
#include "references/ReferenceIndex.h"

void Try(const std::string& input) {
  using namespace solution;
  std::string error;
  const auto design = ReadDesignBytes(input, "a.xml", error);
  if (design == nullptr) {
    Check(error.starts_with("a.xml ") && error.find('\n') == error.npos);
    return;
  }
  Check(error.empty() && !design->fileName().empty());
  for (const Element& element : design->elements()) Check(!CanonicalText(*design, element).empty());
  const ReferenceIndex index(FindReferences(*design));
  for (const Reference& reference : index.all()) Check(reference.from != nullptr);
  for (const Element& element : design->elements()) {
    if (element.kind == Kind::kScript) Check(index.CallChain(element).size() <= index.all().size());
  }
  Check(Compare(*design, *design).changes.empty());
}
