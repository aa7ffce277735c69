#include "formula/MergeText.h"

namespace solution {

std::vector<std::string_view> MergeFormulas(std::string_view text) {
  constexpr std::string_view kStart = "<<", kEnd = ">>", kFormulaMark = "\u0192:";
  std::vector<std::string_view> formulas;
  for (auto start = text.find(kStart); start != std::string_view::npos; start = text.find(kStart, start + 1)) {
    const auto end = text.find(kEnd, start);
    if (end == std::string_view::npos) break;
    std::string_view formula = text.substr(start + kStart.size(), end - start - kStart.size());
    if (formula.starts_with(kFormulaMark)) formula.remove_prefix(kFormulaMark.size());
    formulas.push_back(formula);
  }
  return formulas;
}

}  // namespace solution
