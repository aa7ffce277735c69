// How well references are found in formulas: compared with the analysis that FileMaker itself writes next to every
// formula in formats 2.2.0 and 2.2.1. Prints precision and recall for each export; fails below 99 %.
#include <cstdio>
#include <set>
#include <string>

#include "design/DesignReader.h"
#include "design/Names.h"
#include "export/Xml.h"
#include "references/Place.h"
#include "references/Scope.h"

namespace {

using namespace solution;

constexpr double kDemanded = 0.99;

class Measurement {
 public:
  explicit Measurement(const Design& design) : design_(design) {
    for (const Element& element : design.elements()) {
      for (const XmlNode node : element.nodes) Visit(element, node, node);
    }
  }

  bool Print(const char* path) const {
    const double precision = Ratio(extra_), recall = Ratio(missed_);
    std::printf("%s: %d found, %d missed, %d extra: precision %.2f %%, recall %.2f %%\n", path, found_, missed_, extra_,
                100 * precision, 100 * recall);
    return found_ > 0 && precision >= kDemanded && recall >= kDemanded;
  }

 private:
  using Names = std::multiset<std::string>;

  double Ratio(int wrong) const { return found_ + wrong == 0 ? 0 : static_cast<double>(found_) / (found_ + wrong); }

  void Visit(const Element& element, XmlNode node, XmlNode root) {
    if (IsBookkeeping(node)) return;
    const XmlNode answer = node.parent().child("ChunkList");
    if (IsFormula(node) && answer) return Compare(element, node, root, Expected(answer));
    for (const XmlNode child : node.children()) Visit(element, child, root);
  }

  Names Expected(XmlNode chunks) const {
    Names names;
    for (const XmlNode chunk : chunks.children("Chunk")) {
      const XmlNode field = chunk.child("FieldReference");
      if (Attribute(chunk, "type") == "FieldRef")
        names.insert(FieldName(design_.Find(Attribute(field, "UUID")), Attribute(field, "name")));
      if (Attribute(chunk, "type") == "CustomFunctionRef") names.insert("function " + FoldCase(Text(chunk)));
    }
    return names;
  }

  static std::string FieldName(const Element* field, std::string_view name) {
    return "field " + (field == nullptr ? std::string(name) : DisplayName(*field) + ' ' + std::string(field->uuid));
  }

  void Compare(const Element& element, XmlNode node, XmlNode root, Names expected) {
    const std::string formula = Text(node);
    const auto report = [&](const char* what, const std::string& name) {
      std::printf("%s %s in %s %s, %s\n", what, name.c_str(), std::string(NamesOf(element.kind).title).c_str(),
                  DisplayName(element).c_str(), PlaceOf(node, root).c_str());
    };
    for (const FormulaReference& reference : FindReferences(design_, formula, ScopeOf(design_, element, node))) {
      if (reference.kind == Kind::kTableOccurrence || reference.text.starts_with('<')) continue;
      const std::string name = reference.kind == Kind::kField ? FieldName(reference.target, reference.text)
                                                              : "function " + FoldCase(reference.text);
      const auto same = expected.find(name);
      if (same == expected.end()) {
        ++extra_;
        report("extra", name);
      } else {
        ++found_;
        expected.erase(same);
      }
    }
    for (const std::string& name : expected) {
      ++missed_;
      report("missed", name);
    }
  }

  const Design& design_;
  int found_ = 0, missed_ = 0, extra_ = 0;
};

}  // namespace

int main(int argc, char** argv) {
  bool isGood = argc > 1;
  for (int i = 1; i < argc; ++i) {
    std::string error;
    const auto design = ReadDesign(argv[i], error);
    if (design == nullptr) std::printf("%s\n", error.c_str());
    isGood = design != nullptr && Measurement(*design).Print(argv[i]) && isGood;
  }
  return isGood ? 0 : 1;
}
