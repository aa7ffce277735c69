// Lines typed on a terminal, with editing, history and completion.
#pragma once

#include <histedit.h>

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "fmsim/Completion.h"

inline constexpr char kPrompt[] = "fmsim> ";
inline constexpr char kContinuationPrompt[] = "  ...> ";

class LineEditor {
 public:
  /// Waits until standard input can be read; false ends the line at once. It must call `redraw` after printing.
  using Await = std::function<bool(const std::function<void()>& redraw)>;
  using Completer = std::function<Completion(std::string_view line)>;

  /// `historyFile` is read now and written at the end, readable by its owner only; empty: the history is not kept.
  LineEditor(Await await, Completer complete, std::string historyFile);
  ~LineEditor();
  LineEditor(const LineEditor&) = delete;
  LineEditor& operator=(const LineEditor&) = delete;

  /// The next line without its line ending; nullopt at the end of input and when `await` returned false. `prompt` must
  /// outlive the editor.
  std::optional<std::string> ReadLine(const char* prompt);

 private:
  static int ReadCharacter(EditLine* editor, wchar_t* character);
  static unsigned char CompleteWord(EditLine* editor, int);
  int ReadCharacter(wchar_t& character);
  void List(const std::vector<std::string>& names);

  Await await_;
  Completer complete_;
  std::string historyFile_;
  const char* prompt_ = kPrompt;
  std::unique_ptr<History, void (*)(History*)> history_;
  std::unique_ptr<EditLine, void (*)(EditLine*)> editor_;
};
