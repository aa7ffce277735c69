#include "changes/Changes.h"

#include <algorithm>
#include <map>
#include <unordered_set>

#include "changes/EqualXml.h"
#include "changes/Matching.h"
#include "changes/Order.h"
#include "changes/PropertyChanges.h"

namespace solution {
namespace {

constexpr std::size_t kReportEvery = 200;
constexpr std::string_view kWithoutCounters = "2.0";  // the start of the format version

class Comparer {
 public:
  Comparer(const Design& older, const Design& newer)
      : older_(older),
        newer_(newer),
        matching_(older, newer),
        versionsDiffer_(Differ("version") || Differ("Source") || Differ("locale")),
        foldersAreLost_(LosesFolders(older) || LosesFolders(newer)),
        properties_(older, newer, matching_, versionsDiffer_) {}

  Comparison Run(const Progress& progress) {
    Warn();
    FindMoved();
    std::size_t done = 0;
    const std::size_t total = newer_.elements().size();
    for (const Element& element : newer_.elements()) {
      if (progress && done % kReportEvery == 0) progress(done, total);
      ++done;
      CompareElement(element);
    }
    for (const Element& element : older_.elements()) {
      if (matching_.NewerOf(element) == nullptr) Add(ChangeKind::kRemoved, &element, nullptr);
    }
    std::stable_sort(result_.changes.begin(), result_.changes.end(),
                     [](const Change& a, const Change& b) { return KindOf(a) < KindOf(b); });
    if (progress) progress(total, total);
    return std::move(result_);
  }

 private:
  static Kind KindOf(const Change& change) { return (change.newer ? change.newer : change.older)->kind; }

  bool Differ(const char* attribute) const {
    return older_.document().Attribute(attribute) != newer_.document().Attribute(attribute);
  }

  // Format 2.0 writes it without hyphens.
  static std::string FileId(const Design& design) {
    std::string id(design.document().Attribute("UUID"));
    std::erase(id, '-');
    return id;
  }

  void Warn() {
    const auto both = [this](const char* attribute) {
      return " (" + std::string(older_.document().Attribute(attribute)) + " and " +
             std::string(newer_.document().Attribute(attribute)) + ')';
    };
    if (versionsDiffer_) {
      const std::string how = Differ("Source") || Differ("version")
                                  ? "by different versions of FileMaker" + both("Source")
                                  : "in different languages" + both("locale");
      result_.warnings.push_back("the exports were saved " + how +
                                 ": an element counts as edited only if its modification counter changed");
    }
    if (versionsDiffer_ && older_.document().Attribute("version").starts_with(kWithoutCounters)) {
      result_.warnings.push_back("format 2.0 has no modification counters: what was edited since is unknown");
    }
    if (FileId(older_) != FileId(newer_))
      result_.warnings.push_back("the exports are of different files" + both("File"));
  }

  void Add(ChangeKind change, const Element* older, const Element* newer, std::vector<PropertyChange> properties = {}) {
    result_.changes.push_back({change, older, newer, std::move(properties)});
  }

  void CompareElement(const Element& newer) {
    const Element* older = matching_.OlderOf(newer);
    if (older == nullptr) return Add(ChangeKind::kAdded, nullptr, &newer);
    if (older->name != newer.name) {
      Add(ChangeKind::kRenamed, older, &newer, {{"name", std::string(older->name), std::string(newer.name)}});
    }
    if (IsInOtherFolder(*older, newer)) {
      Add(ChangeKind::kMoved, older, &newer, {{"folder", FolderName(*older), FolderName(newer)}});
    } else if (reordered_.count(&newer) != 0) {
      Add(ChangeKind::kMoved, older, &newer, {{"order", {}, {}}});
    }
    if (!MayBeEdited(*older, newer)) return;
    auto properties = properties_.Compare(*older, newer);
    if (!properties.empty()) Add(ChangeKind::kEdited, older, &newer, std::move(properties));
  }

  bool IsInOtherFolder(const Element& older, const Element& newer) const {
    const Element* parent = older.parent == nullptr ? nullptr : matching_.NewerOf(*older.parent);
    return parent != newer.parent && newer.kind != Kind::kField && !(foldersAreLost_ && IsFunction(newer));
  }

  // Before 2.2.3, exports do not say which folder a custom function is in.
  static bool LosesFolders(const Design& design) { return design.document().Attribute("version") < "2.2.3"; }
  static bool IsFunction(const Element& element) {
    return element.kind == Kind::kCustomFunction || element.kind == Kind::kCustomFunctionFolder;
  }

  bool IsArranged(const Element& element) const {
    switch (element.kind) {
      case Kind::kScript:
      case Kind::kScriptFolder:
      case Kind::kLayout:
      case Kind::kLayoutFolder:
        return true;
      default:
        return IsFunction(element) && !foldersAreLost_;
    }
  }

  static std::string FolderName(const Element& element) {
    return element.parent == nullptr ? std::string() : std::string(element.parent->name);
  }

  bool MayBeEdited(const Element& older, const Element& newer) const {
    if (versionsDiffer_ &&
        (!older.modifications || !newer.modifications || older.modifications == newer.modifications)) {
      return false;
    }
    return !EqualXml(older.nodes, newer.nodes);
  }

  // Elements that the user moved within a list.
  void FindMoved() {
    std::map<const Element*, std::vector<const Element*>> siblings;
    for (const Element& element : newer_.elements()) {
      const Element* older = IsArranged(element) ? matching_.OlderOf(element) : nullptr;
      if (older != nullptr && !IsInOtherFolder(*older, element)) siblings[element.parent].push_back(&element);
    }
    for (const auto& [parent, elements] : siblings) {
      std::vector<std::size_t> positions;
      for (const Element* element : elements) positions.push_back(PositionOf(*matching_.OlderOf(*element)));
      for (const std::size_t moved : OutOfOrder(positions)) reordered_.insert(elements[moved]);
    }
  }

  std::size_t PositionOf(const Element& older) {
    if (positions_.empty()) {
      for (const Element& element : older_.elements()) positions_.emplace(&element, positions_.size());
    }
    return positions_.at(&older);
  }

  const Design& older_;
  const Design& newer_;
  const Matching matching_;
  const bool versionsDiffer_;
  const bool foldersAreLost_;
  const PropertyComparer properties_;
  std::unordered_map<const Element*, std::size_t> positions_;
  std::unordered_set<const Element*> reordered_;
  Comparison result_;
};

}  // namespace

std::string_view WordOf(ChangeKind change) {
  constexpr std::string_view kWords[] = {"added", "removed", "renamed", "moved", "edited"};
  return kWords[static_cast<std::size_t>(change)];
}

Comparison Compare(const Design& older, const Design& newer, const Progress& progress) {
  return Comparer(older, newer).Run(progress);
}

}  // namespace solution
