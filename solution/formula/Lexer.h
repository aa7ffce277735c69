// Splits a formula into tokens, without knowing the language of its functions.
#pragma once

#include <string_view>

namespace solution {

enum class TokenKind {
  kEnd,
  kText,  ///< a literal, with its quotes, or a lone paragraph sign
  kNumber,
  kName,        ///< words with spaces between them: names, and in any language operators such as `and`
  kQuotedName,  ///< ${...}
  kVariable,    ///< $local or $$global
  kOperator,
  kColons,
  kSeparator,
  kOpen,
  kClose,
  kOpenList,
  kCloseList,
  kOther,  ///< a character that has no meaning in a formula
};

struct Token {
  TokenKind kind = TokenKind::kEnd;
  std::string_view text = {};  ///< the part of the formula, as written
};

class Lexer {
 public:
  /// `formula` (UTF-8) must outlive the lexer and its tokens.
  explicit Lexer(std::string_view formula) : rest_(formula) {}

  /// The next token; kEnd from the end on. An open comment or text extends to the end.
  Token Next();

  /// What follows the last token.
  std::string_view rest() const { return rest_; }
  void Skip(std::size_t bytes) { rest_.remove_prefix(bytes); }

 private:
  void SkipWhiteSpaceAndComments();
  void SkipNestedComment();
  Token Take(TokenKind kind, std::size_t length);
  std::size_t TextLength() const;
  std::size_t NumberLength() const;
  std::size_t NameLength() const;
  Token TakeDollar();

  std::string_view rest_;
};

/// The first word of `text`, which starts with one: up to a space or a character that no name contains.
std::string_view FirstWord(std::string_view text);

}  // namespace solution
