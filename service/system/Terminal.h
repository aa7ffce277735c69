// Output on a terminal: colours, progress, and text from other sources.
#pragma once

#include <functional>
#include <string>
#include <string_view>

namespace service {

/// Colours texts for a terminal; otherwise returns them unchanged.
class Colours {
 public:
  explicit Colours(bool isOn) : isOn_(isOn) {}
  /// On when standard output is a terminal, unless $NO_COLOR or $TERM=dumb asks for plain text.
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

/// Shows on standard error how much of `task` is done, in one line that is overwritten and finally removed. Shows
/// nothing when standard error is not a terminal or the work is quick.
std::function<void(std::size_t done, std::size_t total)> ShowProgress(std::string task);

/// `text` with visible control characters, such as \x1B, except tabs and line endings, so that the terminal does not
/// execute them.
std::string TextForTerminal(std::string_view text);

/// `text` in the same way, but with spaces for line endings and tabs.
std::string LineForTerminal(std::string_view text);

}  // namespace service
