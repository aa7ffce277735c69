// Script steps as readable lines.
#pragma once

#include <string>
#include <vector>

#include "canonical/Naming.h"

namespace solution {

struct StepLine {
  int depth = 0;        ///< how many If, Loop and Open Transaction steps enclose it
  std::string text;     ///< "Set Field [ Orders::Total ; Quantity * Price ]"; may contain line endings of formulas
  std::string details;  ///< everything that the export says about the step
};

inline constexpr int kCommentStep = 89;  ///< the number of a step is the same in every language

/// Keeps track of which steps enclose others.
class StepNesting {
 public:
  /// The depth of the next step, which has the number `id`.
  int DepthOf(int id, bool isEnabled);

 private:
  int depth_ = 0;
};

/// The lines as one text, indented by their depth.
std::string JoinLines(const std::vector<StepLine>& lines);

/// The line of `step`, which belongs to `element`, at depth 0.
StepLine LineOf(const Design& design, const Element& element, XmlNode step, const Naming& naming);

/// The steps of `script` in their order.
std::vector<StepLine> StepLines(const Design& design, const Element& script, const Naming& naming = NameOnly);

}  // namespace solution
