#include "formula/Lexer.h"

#include <algorithm>
#include <string>

namespace solution {
namespace {

constexpr std::string_view kWhiteSpace = " \t\r\n";
constexpr std::string_view kLineEndings = "\r\n";
constexpr std::string_view kParagraph = "\u00B6";
// Characters that no unquoted name contains.
constexpr std::string_view kReserved = " \t\r\n,+-*/\\^&=<>()[]{}\";:$";
constexpr std::string_view kReservedCharacters[] = {"\u2260", "\u2264", "\u2265", kParagraph};

struct Sign {
  std::string_view spelling;
  TokenKind kind;
};

// A longer sign comes before the signs that it starts with.
constexpr Sign kSigns[] = {
    {"<>", TokenKind::kOperator},     {"<=", TokenKind::kOperator},     {">=", TokenKind::kOperator},
    {"\u2260", TokenKind::kOperator}, {"\u2264", TokenKind::kOperator}, {"\u2265", TokenKind::kOperator},
    {"<", TokenKind::kOperator},      {">", TokenKind::kOperator},      {"=", TokenKind::kOperator},
    {"+", TokenKind::kOperator},      {"-", TokenKind::kOperator},      {"*", TokenKind::kOperator},
    {"/", TokenKind::kOperator},      {"^", TokenKind::kOperator},      {"&", TokenKind::kOperator},
    {"::", TokenKind::kColons},       {";", TokenKind::kSeparator},     {",", TokenKind::kSeparator},
    {"(", TokenKind::kOpen},          {")", TokenKind::kClose},         {"[", TokenKind::kOpenList},
    {"]", TokenKind::kCloseList},     {kParagraph, TokenKind::kText},
};

bool IsDigit(char c) { return c >= '0' && c <= '9'; }

std::size_t CountDigits(std::string_view text) {
  return static_cast<std::size_t>(std::find_if_not(text.begin(), text.end(), IsDigit) - text.begin());
}

bool EndsName(std::string_view text) {
  const auto starts = [text](std::string_view character) { return text.starts_with(character); };
  return kReserved.find(text.front()) != std::string_view::npos ||
         (static_cast<unsigned char>(text.front()) >= 0x80 &&
          std::any_of(std::begin(kReservedCharacters), std::end(kReservedCharacters), starts));
}

}  // namespace

std::string_view FirstWord(std::string_view text) {
  std::size_t length = 0;
  while (length < text.size() && !EndsName(text.substr(length))) ++length;
  return text.substr(0, length);
}

void Lexer::SkipNestedComment() {
  int depth = 0;
  while (!rest_.empty()) {
    const bool opens = rest_.starts_with("/*");
    const bool closes = rest_.starts_with("*/");
    depth += opens ? 1 : closes ? -1 : 0;
    Skip(opens || closes ? 2 : 1);
    if (depth == 0) return;
  }
}

void Lexer::SkipWhiteSpaceAndComments() {
  while (true) {
    Skip(std::min(rest_.find_first_not_of(kWhiteSpace), rest_.size()));
    if (rest_.starts_with("/*")) {
      SkipNestedComment();
    } else if (rest_.starts_with("//")) {
      Skip(std::min(rest_.find_first_of(kLineEndings), rest_.size()));
    } else {
      return;
    }
  }
}

Token Lexer::Take(TokenKind kind, std::size_t length) {
  const Token token{kind, rest_.substr(0, length)};
  Skip(token.text.size());
  return token;
}

std::size_t Lexer::TextLength() const {
  for (std::size_t at = 1; at < rest_.size(); ++at) {
    if (rest_[at] == '"') return at + 1;
    if (rest_[at] == '\\') ++at;
  }
  return rest_.size();
}

std::size_t Lexer::NumberLength() const {
  std::size_t length = CountDigits(rest_);
  if (length < rest_.size() && rest_[length] == '.') length += 1 + CountDigits(rest_.substr(length + 1));
  const std::string_view exponent = rest_.substr(length);
  if (exponent.empty() || (exponent[0] != 'e' && exponent[0] != 'E')) return length;
  const std::size_t sign = exponent.size() > 1 && (exponent[1] == '-' || exponent[1] == '+') ? 1 : 0;
  const std::size_t digits = CountDigits(exponent.substr(1 + sign));
  return digits == 0 ? length : length + 1 + sign + digits;
}

// Names contain spaces without any quoting, so words up to the next sign are one token.
std::size_t Lexer::NameLength() const {
  std::size_t length = FirstWord(rest_).size();
  while (true) {
    const std::size_t next = rest_.find_first_not_of(' ', length);
    if (next == std::string_view::npos || next == length) return length;
    const std::size_t word = FirstWord(rest_.substr(next)).size();
    if (word == 0) return length;
    length = next + word;
  }
}

// `$name`, `$$name` or `${name}`.
Token Lexer::TakeDollar() {
  if (rest_.starts_with("${")) {
    const auto end = rest_.find('}');
    return Take(TokenKind::kQuotedName, end == std::string_view::npos ? end : end + 1);
  }
  const std::size_t dollars = rest_.starts_with("$$") ? 2 : 1;
  return Take(TokenKind::kVariable, dollars + FirstWord(rest_.substr(dollars)).size());
}

Token Lexer::Next() {
  SkipWhiteSpaceAndComments();
  if (rest_.empty()) return {};
  if (rest_.front() == '"') return Take(TokenKind::kText, TextLength());
  if (rest_.front() == '$') return TakeDollar();
  if (IsDigit(rest_[0]) || (rest_[0] == '.' && rest_.size() > 1 && IsDigit(rest_[1]))) {
    return Take(TokenKind::kNumber, NumberLength());
  }
  for (const Sign& sign : kSigns) {
    if (rest_.starts_with(sign.spelling)) return Take(sign.kind, sign.spelling.size());
  }
  if (EndsName(rest_)) return Take(TokenKind::kOther, 1);
  return Take(TokenKind::kName, NameLength());
}

}  // namespace solution
