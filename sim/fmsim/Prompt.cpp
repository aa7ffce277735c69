#include "sim/fmsim/Prompt.h"

#include <poll.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <iostream>
#include <string>
#include <vector>

#include <editline/readline.h>

#include "sim/fmsim/Commands.h"

namespace {

constexpr char kPrompt[] = "fmsim> ";
constexpr char kWordBreaks[] = " \t\n\"()[]{};&+-*/^=<>";  // no dot: it is part of plug-in function names

// The line editor's callbacks carry no context of their own.
Session* session = nullptr;
bool ended = false;
std::vector<std::string> matches;

void OnLine(char* line) {
  if (line == nullptr) {  // end of input
    std::cout << '\n';
    ended = true;
    return;
  }
  const std::string text = line;
  std::free(line);
  if (!text.empty()) add_history(text.c_str());
  ended = Execute(*session, text) == LineResult::kQuit;
  rl_callback_handler_install(kPrompt, OnLine);  // the editor leaves its unbuffered mode with each line
}

bool StartsWithIgnoringCase(const std::string& name, const char* start) {
  const std::size_t length = std::strlen(start);
  return name.size() >= length && strncasecmp(name.c_str(), start, length) == 0;
}

char* NextMatch(const char* start, int state) {
  static std::size_t next;
  if (state == 0) {
    next = 0;
    matches.clear();
    for (auto& name : CompletableNames(*session)) {
      if (StartsWithIgnoringCase(name, start)) matches.push_back(std::move(name));
    }
  }
  return next < matches.size() ? strdup(matches[next++].c_str()) : nullptr;
}

char** Complete(const char* word, int, int) {
  rl_attempted_completion_over = 1;  // names only, no files
  rl_completion_append_character = '\0';
  return rl_completion_matches(word, NextMatch);
}

}  // namespace

void RunPrompt(Session& newSession) {
  session = &newSession;
  ended = false;
  static char breaks[sizeof kWordBreaks];
  std::memcpy(breaks, kWordBreaks, sizeof breaks);
  rl_basic_word_break_characters = breaks;
  rl_completer_word_break_characters = breaks;
  rl_attempted_completion_function = Complete;
  std::cout << "Type a calculation, or .help" << std::endl;
  rl_callback_handler_install(kPrompt, OnLine);
  while (!ended && !Interrupted()) {
    pollfd input{STDIN_FILENO, POLLIN, 0};
    if (poll(&input, 1, static_cast<int>(session->idleInterval().count())) > 0) rl_callback_read_char();
    if (!ended) session->Idle();
  }
  rl_callback_handler_remove();
  session->ForgetFailures();
}

void RunLines(Session& newSession) {
  std::string pending;
  for (;;) {
    for (auto end = pending.find('\n'); end != pending.npos; end = pending.find('\n')) {
      const std::string line = pending.substr(0, end);
      pending.erase(0, end + 1);
      const bool silent = line.empty() || line.starts_with("//") || line.starts_with(".say") || line.starts_with(".check");
      if (newSession.echo && !silent) std::cout << kPrompt << line << std::endl;
      if (Interrupted() || Execute(newSession, line) == LineResult::kQuit) return;
    }
    pollfd input{STDIN_FILENO, POLLIN, 0};
    if (Interrupted()) return;
    if (poll(&input, 1, static_cast<int>(newSession.idleInterval().count())) <= 0) {
      newSession.Idle();
      continue;
    }
    char bytes[65536];
    const ssize_t count = read(STDIN_FILENO, bytes, sizeof bytes);
    if (count > 0) pending.append(bytes, static_cast<std::size_t>(count));
    if (count == 0 || (count < 0 && errno != EINTR)) break;
  }
  Execute(newSession, pending);  // a last line without its end
}
