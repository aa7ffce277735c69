// Splits a formula into tokens.
#pragma once

#include <string>
#include <string_view>

#include "calc/Number.h"
#include "calc/Syntax.h"

namespace calc {

/// Thrown by the lexer and the parser; never leaves Parse().
struct SyntaxError {
  int code;  ///< FileMaker's error number
};

enum class TokenKind {
  kEnd,
  kText,
  kNumber,
  kName,        ///< words with one or more spaces between them
  kQuotedName,  ///< ${...}: never a function
  kLocalVariable,
  kGlobalVariable,
  kOperator,
  kColons,
  kSeparator,
  kOpen,
  kClose,
  kOpenList,
  kCloseList,
};

struct Token {
  TokenKind kind = TokenKind::kEnd;
  std::u16string text = {};  ///< the value of a literal; the bare name of a name or variable
  Number number = {};
  Operator op = Operator::kAdd;
};

class Lexer {
 public:
  /// `formula` must outlive the lexer.
  explicit Lexer(std::u16string_view formula) : rest_(formula) {}

  /// The next token; kEnd at the end, however often it is called. Throws SyntaxError for open comments and texts and
  /// empty names.
  Token Next();

 private:
  bool TakePrefix(std::u16string_view prefix);
  void SkipBlanksAndComments();
  void SkipNestedComment();
  Token TakeText();
  Token TakeNumber();
  Token TakeName();
  Token TakeDollar();
  std::u16string TakeWord();

  std::u16string_view rest_;
};

/// Whether `formula` ends within a parenthesis, bracket, text or comment, so that more must follow.
bool IsUnfinished(std::u16string_view formula);

}  // namespace calc
