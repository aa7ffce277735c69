// What is shown on a terminal: colours, progress, and texts that others wrote.
#pragma once

#include <functional>
#include <string>
#include <string_view>

namespace service {

/// Colours texts for a terminal; gives them back as they are otherwise.
class Colours {
 public:
  explicit Colours(bool isOn) : isOn_(isOn) {}
  /// On when the standard output is a terminal that is not asked for plain text by $NO_COLOR or $TERM=dumb.
  static Colours OfOutput();

  std::string Bold(std::string_view text) const { return Paint("1", text); }
  std::string Dim(std::string_view text) const { return Paint("2", text); }
  std::string Red(std::string_view text) const { return Paint("31", text); }
  std::string Green(std::string_view text) const { return Paint("32", text); }
  std::string Yellow(std::string_view text) const { return Paint("33", text); }

 private:
  std::string Paint(const char* code, std::string_view text) const;
  bool isOn_;
};

/// Shows how much of `task` is done on the standard error, one line that is overwritten and in the end removed; shows
/// nothing when that is no terminal, or when the work takes less than a moment.
std::function<void(std::size_t done, std::size_t total)> ShowProgress(std::string task);

/// `text` with its control characters visible, as \x1B, apart from tabs and line endings: a terminal would carry out
/// what they begin.
std::string TextForTerminal(std::string_view text);

/// The same with line endings and tabs as spaces.
std::string LineForTerminal(std::string_view text);

}  // namespace service
