#include "fmsim/Prompt.h"

#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <iostream>
#include <string>
#include <string_view>

#include "fmsim/Commands.h"
#include "fmsim/Completion.h"
#include "fmsim/LineEditor.h"
#include "fmsim/Signals.h"

namespace {

// Carries out a line of a pipe or file. False when it was the last.
bool TakeLine(Session& session, const std::string& line) {
  const bool silent = line.empty() || line.starts_with("//") || line.starts_with(".say") || line.starts_with(".check");
  if (session.echo && !silent) std::cout << kPrompt << line << std::endl;
  return Execute(session, line) != LineResult::kQuit && CaughtSignal() == 0;
}

// A path in the user's state folder; empty when there is none.
std::string HistoryFile() {
  const char* state = std::getenv("XDG_STATE_HOME");
  const char* home = std::getenv("HOME");
  std::filesystem::path folder;
  if (state != nullptr && *state == '/') {
    folder = state;
  } else if (home != nullptr && *home == '/') {
    folder = std::filesystem::path(home) / ".local/state";
  } else {
    return {};
  }
  folder /= "varnix";
  std::error_code failure;
  std::filesystem::create_directories(folder, failure);
  return failure ? std::string() : (folder / "fmsim_history").string();
}

}  // namespace

void RunPrompt(Session& session) {
  LineEditor editor([&session](const auto& redraw) { return session.AwaitInput(STDIN_FILENO, redraw); },
                    [&session](std::string_view line) { return Complete(session, line); }, HistoryFile());
  std::cout << "Type a calculation, or .help" << std::endl;
  std::string text;  // a calculation may take several lines
  for (bool ended = false; !ended;) {
    if (const auto line = editor.ReadLine(text.empty() ? kPrompt : kContinuationPrompt)) {
      text += (text.empty() ? "" : "\n") + *line;
      if (IsUnfinished(text)) continue;
      ended = Execute(session, text) == LineResult::kQuit;
      if (ForgetInterrupt()) std::cout << std::endl;  // it ended what the line started
    } else {
      const bool cancelled = ForgetInterrupt();
      std::cout << (cancelled ? "^C" : "") << std::endl;
      ended = !cancelled;
    }
    text.clear();
    ended = ended || CaughtSignal() != 0;
  }
  session.ForgetFailures();
}

void RunLines(Session& session) {
  std::string line;
  while (session.AwaitInput(STDIN_FILENO)) {
    char bytes[65536];
    const ssize_t count = read(STDIN_FILENO, bytes, sizeof bytes);
    if (count < 0 && errno == EINTR) continue;
    if (count <= 0) {
      TakeLine(session, line);  // a last line without a line ending
      return;
    }
    std::string_view rest(bytes, static_cast<std::size_t>(count));
    for (auto end = rest.find('\n'); end != rest.npos; end = rest.find('\n')) {
      line += rest.substr(0, end);
      rest.remove_prefix(end + 1);
      if (IsUnfinished(line)) {
        line += '\n';
        continue;
      }
      if (!TakeLine(session, line)) return;
      line.clear();
    }
    line += rest;
  }
}
