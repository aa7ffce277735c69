#include "references/ReferenceIndex.h"

#include <algorithm>
#include <set>

#include "design/Key.h"
#include "design/Names.h"

namespace solution {
namespace {

bool NeedsUse(const Element& element) {
  switch (element.kind) {
    case Kind::kTable:
    case Kind::kField:
    case Kind::kTableOccurrence:
    case Kind::kLayout:
    case Kind::kScript:
    case Kind::kValueList:
    case Kind::kCustomFunction:
    case Kind::kCustomMenuSet:
    case Kind::kTheme:
    case Kind::kExternalDataSource:
      return true;
    case Kind::kCustomMenu:
      return !element.name.starts_with('[');  // FileMaker's own
    default:
      return false;
  }
}

}  // namespace

ReferenceIndex::ReferenceIndex(std::vector<Reference> references) : references_(std::move(references)) {
  for (const Reference& reference : references_) {
    if (reference.from == reference.to) continue;
    bySource_[reference.from].push_back(&reference);
    if (reference.to != nullptr) byTarget_[reference.to].push_back(&reference);
  }
}

std::vector<const Reference*> ReferenceIndex::UsedBy(const Element& element) const {
  const auto found = byTarget_.find(&element);
  return found == byTarget_.end() ? std::vector<const Reference*>() : found->second;
}

std::vector<const Reference*> ReferenceIndex::Uses(const Element& element) const {
  const auto found = bySource_.find(&element);
  return found == bySource_.end() ? std::vector<const Reference*>() : found->second;
}

std::vector<const Reference*> ReferenceIndex::Select(const std::vector<const Element*>& of, bool broken) const {
  const auto isOneOf = [&of](const Element* element) {
    return of.empty() || std::find(of.begin(), of.end(), element) != of.end();
  };
  std::vector<const Reference*> selected;
  for (const Reference& reference : references_) {
    if (IsBroken(reference) == broken && (isOneOf(reference.from) || isOneOf(reference.to)))
      selected.push_back(&reference);
  }
  return selected;
}

std::vector<const Element*> ReferenceIndex::Unused(const Design& design) const {
  std::vector<const Element*> unused;
  for (const Element& element : design.elements()) {
    if (!NeedsUse(element)) continue;
    const auto references = UsedBy(element);
    const auto counts = [](const Reference* reference) { return reference->from->kind != Kind::kPrivilegeSet; };
    if (std::none_of(references.begin(), references.end(), counts)) unused.push_back(&element);
  }
  return unused;
}

std::vector<ReferenceIndex::Call> ReferenceIndex::CallChain(const Element& script) const {
  std::vector<Call> chain;
  std::set<const Element*> shown = {&script};
  std::vector<Call> pending = {{0, &script, false}};  // the next one is the last
  while (!pending.empty()) {
    const Call call = pending.back();
    pending.pop_back();
    const bool isNew = call.depth == 0 || shown.insert(call.script).second;
    if (call.depth > 0) chain.push_back({call.depth, call.script, !isNew});
    if (!isNew) continue;
    std::vector<Call> calls;
    std::set<const Element*> known;
    for (const Reference* reference : Uses(*call.script)) {
      const bool isCall = reference->to != nullptr && reference->toKind == Kind::kScript;
      if (isCall && known.insert(reference->to).second) calls.push_back({call.depth + 1, reference->to, false});
    }
    pending.insert(pending.end(), calls.rbegin(), calls.rend());
  }
  return chain;
}

std::vector<const Element*> FindElements(const Design& design, std::string_view name) {
  if (const Element* element = FindKey(design, name)) return {element};
  std::vector<const Element*> found;
  const std::string folded = FoldCase(name);
  for (const Element& element : design.elements()) {
    const bool isNamed = FoldCase(DisplayName(element)) == folded || FoldCase(element.name) == folded;
    if (isNamed || FoldCase(element.uuid) == folded) found.push_back(&element);
  }
  const auto colons = name.find("::");
  if (!found.empty() || colons == std::string_view::npos) return found;
  const Element* occurrence = design.Find(Kind::kTableOccurrence, name.substr(0, colons));
  const Element* field = occurrence == nullptr ? nullptr : design.FindField(occurrence->table, name.substr(colons + 2));
  if (field != nullptr) found.push_back(field);
  return found;
}

}  // namespace solution
