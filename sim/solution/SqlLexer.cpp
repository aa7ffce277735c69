// Tokens of a query.
#include "solution/SqlLexer.h"

#include <algorithm>
#include <iterator>

namespace sim {
namespace {

constexpr std::u16string_view kSpace = u" \t\r\n";
constexpr std::u16string_view kSymbols[] = {u"<>", u"<=", u">=", u"=", u"<", u">", u"(",  u")", u",",
                                            u"*",  u"?",  u".",  u"+", u"-", u"/", u"||", u"{"};
constexpr std::u16string_view kDoubledQuote = u"''";
// What distinguishes an empty literal from a doubled quote that opens a text: the end of the predicate, or an escaped
// quote.
constexpr std::u16string_view kAfterEmptyText = u" \t\r\n,)'";

bool IsDigit(char16_t unit) { return unit >= u'0' && unit <= u'9'; }
bool IsLetter(char16_t unit) {
  return (unit >= u'A' && unit <= u'Z') || (unit >= u'a' && unit <= u'z') || unit >= 0x80;
}
// A name may contain an underscore, but must be quoted if it starts with one.
bool IsWordPart(char16_t unit) { return IsLetter(unit) || IsDigit(unit) || unit == u'_'; }

class Lexer {
 public:
  Lexer(std::u16string_view sql, bool lenient) : rest_(sql), lenient_(lenient) {}

  SqlToken Next() {
    rest_.remove_prefix(std::min(rest_.find_first_not_of(kSpace), rest_.size()));
    if (rest_.empty()) return {};
    const char16_t first = rest_.front();
    if (IsLetter(first)) return {SqlToken::kWord, TakeWhile(IsWordPart)};
    if (IsDigit(first)) return {SqlToken::kNumber, Number()};
    if (first == u'"') return {SqlToken::kQuotedName, Quoted()};
    if (first == u'\'') return {SqlToken::kText, Text()};
    const auto symbol = std::find_if(std::begin(kSymbols), std::end(kSymbols),
                                     [this](std::u16string_view candidate) { return rest_.starts_with(candidate); });
    if (symbol == std::end(kSymbols)) throw SqlRefused();
    return {SqlToken::kSymbol, Take(symbol->size())};
  }

 private:
  std::u16string Take(std::size_t count) {
    std::u16string taken(rest_.substr(0, count));
    rest_.remove_prefix(count);
    return taken;
  }

  template <typename Test>
  std::u16string TakeWhile(Test test) {
    return Take(static_cast<std::size_t>(std::find_if_not(rest_.begin(), rest_.end(), test) - rest_.begin()));
  }

  std::u16string Number() {
    std::u16string digits = TakeWhile(IsDigit);
    if (rest_.size() > 1 && rest_[0] == u'.' && IsDigit(rest_[1])) {
      digits += Take(1);
      digits += TakeWhile(IsDigit);
    }
    if (!rest_.empty() && IsWordPart(rest_.front())) throw SqlRefused();
    return digits;
  }

  /// The text between the quotes at the front; a doubled quote inside is one quote.
  std::u16string Quoted() {
    const char16_t quote = rest_.front();
    std::u16string text;
    std::size_t at = 1;
    for (; at < rest_.size(); ++at) {
      if (rest_[at] == quote) {
        if (at + 1 == rest_.size() || rest_[at + 1] != quote) break;
        ++at;
      }
      text += rest_[at];
    }
    if (at >= rest_.size()) throw SqlRefused();
    rest_.remove_prefix(at + 1);
    return text;
  }

  std::u16string Text() {
    if (lenient_ && rest_.starts_with(kDoubledQuote)) {
      const auto after = rest_.substr(kDoubledQuote.size());
      const auto end = after.find(u'\'');
      const bool isEmpty = after.empty() || kAfterEmptyText.find(after.front()) != kAfterEmptyText.npos;
      if (!isEmpty && end != after.npos && after.substr(end).starts_with(kDoubledQuote)) {
        rest_.remove_prefix(2 * kDoubledQuote.size() + end);
        return std::u16string(after.substr(0, end));
      }
    }
    return Quoted();
  }

  std::u16string_view rest_;
  bool lenient_;
};

}  // namespace

std::vector<SqlToken> SqlTokens(std::u16string_view sql, bool lenient) {
  Lexer lexer(sql, lenient);
  std::vector<SqlToken> tokens;
  do {
    tokens.push_back(lexer.Next());
  } while (tokens.back().kind != SqlToken::kEnd);
  return tokens;
}

}  // namespace sim
