#include "fmsim/LineEditor.h"

#include <strings.h>
#include <unistd.h>

#include <algorithm>
#include <cctype>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <cwchar>
#include <string_view>
#include <utility>

namespace {

constexpr int kHistoryLines = 1000;
// A line with this contains an account key, which must not be written to a file.
constexpr char kSignIn[] = "Varnix.Register";

LineEditor& Self(EditLine* editor) {
  void* self = nullptr;
  el_get(editor, EL_CLIENTDATA, &self);
  return *static_cast<LineEditor*>(self);
}

bool SameLetter(char a, char b) {
  return std::tolower(static_cast<unsigned char>(a)) == std::tolower(static_cast<unsigned char>(b));
}

// The length of the common prefix of `names`, without regard to case.
std::size_t CommonLength(const std::vector<std::string>& names) {
  std::size_t length = names.front().size();
  for (const auto& name : names) {
    const auto differing =
        std::mismatch(names.front().begin(), names.front().end(), name.begin(), name.end(), SameLetter);
    length = std::min(length, static_cast<std::size_t>(differing.first - names.front().begin()));
  }
  while ((names.front()[length] & 0xC0) == 0x80) --length;  // not within a UTF-8 character
  return length;
}

}  // namespace

LineEditor::LineEditor(Await await, Completer complete, std::string historyFile)
    : await_(std::move(await)),
      complete_(std::move(complete)),
      historyFile_(std::move(historyFile)),
      history_(history_init(), history_end),
      editor_(el_init("fmsim", stdin, stdout, stderr), el_end) {
  HistEvent event;
  history(history_.get(), &event, H_SETSIZE, kHistoryLines);
  history(history_.get(), &event, H_SETUNIQUE, 1);
  if (!historyFile_.empty()) history(history_.get(), &event, H_LOAD, historyFile_.c_str());
  EditLine* editor = editor_.get();
  el_set(editor, EL_CLIENTDATA, this);
  el_set(
      editor, EL_PROMPT, +[](EditLine* self) { return const_cast<char*>(Self(self).prompt_); });
  el_set(editor, EL_EDITOR, "emacs");
  el_set(editor, EL_HIST, history, history_.get());
  el_set(editor, EL_GETCFN, static_cast<int (*)(EditLine*, wchar_t*)>(ReadCharacter));
  el_wset(editor, EL_ADDFN, L"fmsim-complete", L"Complete a name", CompleteWord);  // el_set would leak copies
  el_set(editor, EL_BIND, "^I", "fmsim-complete", nullptr);
  el_set(editor, EL_BIND, "^R", "em-inc-search-prev", nullptr);
  el_source(editor, nullptr);  // the user's own ~/.editrc
}

LineEditor::~LineEditor() {
  HistEvent event;
  if (!historyFile_.empty()) history(history_.get(), &event, H_SAVE, historyFile_.c_str());  // mode 0600
}

std::optional<std::string> LineEditor::ReadLine(const char* prompt) {
  prompt_ = prompt;
  el_resize(editor_.get());
  // Before the prompt appears: a terminal still in line mode would cut pasted text at 4095 characters.
  el_set(editor_.get(), EL_PREP_TERM, 1);
  int length = 0;
  const char* typed = el_gets(editor_.get(), &length);
  if (typed == nullptr) return std::nullopt;
  std::string line(typed, static_cast<std::size_t>(length));
  while (line.ends_with('\n') || line.ends_with('\r')) line.pop_back();
  HistEvent event;
  const bool keep = !line.empty() && strcasestr(line.c_str(), kSignIn) == nullptr;
  if (keep) history(history_.get(), &event, H_ENTER, line.c_str());
  return line;
}

int LineEditor::ReadCharacter(EditLine* editor, wchar_t* character) { return Self(editor).ReadCharacter(*character); }

int LineEditor::ReadCharacter(wchar_t& character) {
  std::mbstate_t state{};
  for (;;) {
    if (!await_([this] { el_set(editor_.get(), EL_REFRESH); })) {
      errno = EINTR;
      return -1;
    }
    char byte = 0;
    const ssize_t count = read(STDIN_FILENO, &byte, 1);
    if (count < 0 && errno == EINTR) continue;
    if (count <= 0) return static_cast<int>(count);
    const std::size_t used = std::mbrtowc(&character, &byte, 1, &state);
    if (used != static_cast<std::size_t>(-2)) {
      if (used == static_cast<std::size_t>(-1)) character = L'\uFFFD';
      return 1;
    }
  }
}

unsigned char LineEditor::CompleteWord(EditLine* editor, int) {
  const LineInfo* line = el_line(editor);
  const std::string before(line->buffer, static_cast<std::size_t>(line->cursor - line->buffer));
  const auto [start, names] = Self(editor).complete_(before);
  if (names.empty()) return CC_REFRESH_BEEP;
  const std::string word = before.substr(start);
  const std::string common = names.front().substr(0, CommonLength(names));
  if (common == word && names.size() > 1) {
    Self(editor).List(names);
    return CC_REDISPLAY;
  }
  el_deletestr(editor, static_cast<int>(std::mbstowcs(nullptr, word.c_str(), 0)));
  el_insertstr(editor, common.c_str());
  return CC_REFRESH;
}

// In columns, row by row, below the line that is being typed.
void LineEditor::List(const std::vector<std::string>& names) {
  int width = 0;
  el_get(editor_.get(), EL_GETTC, "co", &width);
  std::size_t longest = 0;
  for (const auto& name : names) longest = std::max(longest, name.size());
  const auto column = static_cast<int>(longest) + 2;
  const int perRow = std::max(width / column, 1);
  for (std::size_t i = 0; i < names.size(); ++i) {
    std::printf("%s%-*s", i % static_cast<std::size_t>(perRow) == 0 ? "\n" : "", column, names[i].c_str());
  }
  std::printf("\n");
}
