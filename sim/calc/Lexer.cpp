// Splits a formula into tokens.
#include "calc/Lexer.h"

#include <algorithm>
#include <utility>

#include "calc/Errors.h"
#include "calc/Unicode.h"

namespace calc {
namespace {

constexpr char16_t kParagraph = u'\u00B6';
// Formulas pasted from web pages contain no-break spaces.
constexpr std::u16string_view kWhiteSpace = u" \t\r\n\u00A0";
constexpr std::u16string_view kLineEnds = u"\r\n";
// Characters that names must not contain.
constexpr std::u16string_view kReserved = u" \t\r\n\u00A0,+-*/\\^&=\u2260><\u2264\u2265()[]{}\";:$\u00B6";

struct Sign {
  std::u16string_view spelling;
  TokenKind kind;
  Operator op = Operator::kAdd;
};

// Longer spellings precede their prefixes.
constexpr Sign kSigns[] = {
    {u"<>", TokenKind::kOperator, Operator::kNotEqual},
    {u"<=", TokenKind::kOperator, Operator::kLessOrEqual},
    {u">=", TokenKind::kOperator, Operator::kGreaterOrEqual},
    {u"\u2260", TokenKind::kOperator, Operator::kNotEqual},
    {u"\u2264", TokenKind::kOperator, Operator::kLessOrEqual},
    {u"\u2265", TokenKind::kOperator, Operator::kGreaterOrEqual},
    {u"<", TokenKind::kOperator, Operator::kLess},
    {u">", TokenKind::kOperator, Operator::kGreater},
    {u"=", TokenKind::kOperator, Operator::kEqual},
    {u"+", TokenKind::kOperator, Operator::kAdd},
    {u"-", TokenKind::kOperator, Operator::kSubtract},
    {u"*", TokenKind::kOperator, Operator::kMultiply},
    {u"/", TokenKind::kOperator, Operator::kDivide},
    {u"^", TokenKind::kOperator, Operator::kPower},
    {u"&", TokenKind::kOperator, Operator::kConcatenate},
    {u"::", TokenKind::kColons},
    {u";", TokenKind::kSeparator},
    {u",", TokenKind::kSeparator},  // the calculation dialog turns it into a semicolon
    {u"(", TokenKind::kOpen},
    {u")", TokenKind::kClose},
    {u"[", TokenKind::kOpenList},
    {u"]", TokenKind::kCloseList},
};

constexpr std::pair<std::u16string_view, Operator> kOperatorWords[] = {
    {u"and", Operator::kAnd},
    {u"or", Operator::kOr},
    {u"xor", Operator::kXor},
    {u"not", Operator::kNot},
};

const Operator* OperatorWord(std::u16string_view word) {
  const auto* found = std::find_if(std::begin(kOperatorWords), std::end(kOperatorWords),
                                   [word](const auto& entry) { return EqualIgnoringCase(entry.first, word); });
  return found == std::end(kOperatorWords) ? nullptr : &found->second;
}

size_t CountDigits(std::u16string_view text) {
  return static_cast<size_t>(std::find_if_not(text.begin(), text.end(), IsDigit) - text.begin());
}

std::u16string_view WordAt(std::u16string_view text) { return text.substr(0, text.find_first_of(kReserved)); }

// Length of the exponent at the start of `text`, 0 if there is none.
size_t ExponentLength(std::u16string_view text) {
  if (text.empty() || (text[0] != u'e' && text[0] != u'E')) return 0;
  const size_t sign = text.size() > 1 && (text[1] == u'-' || text[1] == u'+') ? 1 : 0;
  const size_t digits = CountDigits(text.substr(1 + sign));
  return digits == 0 ? 0 : 1 + sign + digits;
}

}  // namespace

bool Lexer::TakePrefix(std::u16string_view prefix) {
  if (!rest_.starts_with(prefix)) return false;
  rest_.remove_prefix(prefix.size());
  return true;
}

void Lexer::SkipNestedComment() {
  for (int depth = 1; depth > 0;) {
    if (rest_.empty()) throw SyntaxError{errors::kOpenComment};
    if (TakePrefix(u"/*")) {
      ++depth;
    } else if (TakePrefix(u"*/")) {
      --depth;
    } else {
      rest_.remove_prefix(1);
    }
  }
}

void Lexer::SkipBlanksAndComments() {
  while (true) {
    rest_.remove_prefix(std::min(rest_.find_first_not_of(kWhiteSpace), rest_.size()));
    if (TakePrefix(u"/*")) {
      SkipNestedComment();
    } else if (rest_.starts_with(u"//")) {
      rest_.remove_prefix(std::min(rest_.find_first_of(kLineEnds), rest_.size()));
    } else {
      return;
    }
  }
}

Token Lexer::TakeText() {
  Token token{TokenKind::kText};
  while (!TakePrefix(u"\"")) {
    if (rest_.empty()) throw SyntaxError{errors::kOpenText};
    char16_t unit = rest_.front() == kParagraph ? u'\r' : rest_.front();
    rest_.remove_prefix(1);
    // Before any other character, a backslash is literal.
    if (unit == u'\\' && !rest_.empty() && (rest_[0] == u'"' || rest_[0] == u'\\' || rest_[0] == kParagraph)) {
      unit = rest_.front();
      rest_.remove_prefix(1);
    }
    token.text += unit;
  }
  return token;
}

Token Lexer::TakeNumber() {
  size_t length = CountDigits(rest_);
  if (length < rest_.size() && rest_[length] == u'.') {
    const size_t fraction = CountDigits(rest_.substr(length + 1));
    if (fraction > 0) length += 1 + fraction;
  }
  length += ExponentLength(rest_.substr(length));
  Token token{TokenKind::kNumber};
  token.number = Number::Parse(rest_.substr(0, length)).value_or(Number());
  rest_.remove_prefix(length);
  return token;
}

std::u16string Lexer::TakeWord() {
  std::u16string word(WordAt(rest_));
  rest_.remove_prefix(word.size());
  return word;
}

Token Lexer::TakeName() {
  std::u16string name = TakeWord();
  if (const Operator* op = OperatorWord(name)) return {TokenKind::kOperator, std::move(name), {}, *op};
  // Names may contain spaces without quoting: the words up to the next sign or operator are one name.
  while (true) {
    const size_t spaces = std::min(rest_.find_first_not_of(u' '), rest_.size());
    const std::u16string_view word = WordAt(rest_.substr(spaces));
    if (spaces == 0 || word.empty() || OperatorWord(word) != nullptr) break;
    name += rest_.substr(0, spaces + word.size());
    rest_.remove_prefix(spaces + word.size());
  }
  return {TokenKind::kName, std::move(name), {}, {}};
}

// `$name`, `$$name` or `${name}`; the first dollar sign is already consumed.
Token Lexer::TakeDollar() {
  Token token{TokenKind::kLocalVariable};
  if (TakePrefix(u"{")) {
    token.kind = TokenKind::kQuotedName;
    const size_t end = rest_.find(u'}');
    if (end == rest_.npos) throw SyntaxError{errors::kNameMissing};
    token.text = rest_.substr(0, end);
    rest_.remove_prefix(end + 1);
  } else {
    if (TakePrefix(u"$")) token.kind = TokenKind::kGlobalVariable;
    token.text = FoldCase(TakeWord());
  }
  if (token.text.empty()) throw SyntaxError{errors::kNameMissing};
  return token;
}

Token Lexer::Next() {
  SkipBlanksAndComments();
  if (rest_.empty()) return {};
  if (TakePrefix(u"\"")) return TakeText();
  if (TakePrefix(u"$")) return TakeDollar();
  if (TakePrefix(u"\u00B6")) return {TokenKind::kText, u"\r", {}, {}};
  if (IsDigit(rest_[0]) || (rest_[0] == u'.' && rest_.size() > 1 && IsDigit(rest_[1]))) return TakeNumber();
  for (const Sign& sign : kSigns) {
    if (TakePrefix(sign.spelling)) return {sign.kind, {}, {}, sign.op};
  }
  // A lone brace, colon or backslash.
  if (WordAt(rest_).empty()) throw SyntaxError{errors::kOperandExpected};
  return TakeName();
}

bool IsUnfinished(std::u16string_view formula) {
  Lexer lexer(formula);
  int open = 0;
  try {
    for (Token token = lexer.Next(); token.kind != TokenKind::kEnd; token = lexer.Next()) {
      if (token.kind == TokenKind::kOpen || token.kind == TokenKind::kOpenList) ++open;
      if (token.kind == TokenKind::kClose || token.kind == TokenKind::kCloseList) --open;
    }
  } catch (const SyntaxError& error) {
    return error.code == errors::kOpenText || error.code == errors::kOpenComment;
  }
  return open > 0;
}

}  // namespace calc
