// Lines typed on a terminal, with editing, history and completion.
#pragma once

#include <histedit.h>

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

inline constexpr char kPrompt[] = "fmsim> ";

class LineEditor {
 public:
  /// Waits until standard input can be read; false ends the line at once. It calls `redraw` when it has printed.
  using Await = std::function<bool(const std::function<void()>& redraw)>;
  /// All names that a word may be completed to.
  using Names = std::function<std::vector<std::string>()>;

  LineEditor(Await await, Names names);
  LineEditor(const LineEditor&) = delete;
  LineEditor& operator=(const LineEditor&) = delete;

  /// The next line without its end; nullopt at the end of input and when the wait was ended.
  std::optional<std::string> ReadLine();

 private:
  static int ReadCharacter(EditLine* editor, wchar_t* character);
  static unsigned char Complete(EditLine* editor, int);
  int ReadCharacter(wchar_t& character);
  void List(const std::vector<std::string>& names);

  Await await_;
  Names names_;
  std::unique_ptr<History, void (*)(History*)> history_;
  std::unique_ptr<EditLine, void (*)(EditLine*)> editor_;
};
