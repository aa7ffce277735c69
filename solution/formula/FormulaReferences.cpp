#include "formula/FormulaReferences.h"

#include <algorithm>
#include <span>

#include "Contains.h"
#include "design/Names.h"
#include "formula/Lexer.h"
#include "formula/Placeholders.h"

namespace solution {
namespace {

// Most languages keep the English names of functions.
constexpr std::string_view kLetNames[] = {"let", "setzevar", "definir", "d\u00E9finir"};
constexpr std::string_view kGetNames[] = {"get", "hole", "obtenir"};
// The name of a field in another file ends before one of these words.
constexpr std::string_view kOperatorWords[] = {"and",   "or", "xor", "not", "und", "oder", "xoder",
                                               "nicht", "et", "ou",  "oux", "non", "e",    "o"};

// The words of a name token, each as a part of it.
std::vector<std::string_view> Words(std::string_view text) {
  std::vector<std::string_view> words;
  while (!text.empty()) {
    const std::string_view word = FirstWord(text);
    words.push_back(word);
    text.remove_prefix(word.size());
    text.remove_prefix(std::min(text.find_first_not_of(' '), text.size()));
  }
  return words;
}

std::string_view Join(std::string_view first, std::string_view last) {
  return {first.data(), static_cast<std::size_t>(last.data() + last.size() - first.data())};
}

std::string_view Unquoted(const Token& token) {
  if (token.kind != TokenKind::kQuotedName) return token.text;
  std::string_view name = token.text.substr(2);
  if (name.ends_with('}')) name.remove_suffix(1);
  return name;
}

/// An open parenthesis or bracket.
struct Frame {
  enum class Kind { kGroup, kCall, kList } kind = Kind::kGroup;
  bool declares = false;  // its entries start with `name =`
  bool isLet = false;     // a call that declares: Let, While
  bool isGet = false;
  int argument = 0;
  std::size_t scope = 0;     // how many names were declared outside
  std::string pending = {};  // declared by the entry, known after it
};

class Finder {
 public:
  Finder(const Design& design, std::string_view formula, const FormulaScope& scope)
      : design_(design), table_(scope.table), lexer_(formula), names_(scope.parameters) {
    Advance();
  }

  std::vector<FormulaReference> Run() {
    StartEntry();
    while (token_.kind != TokenKind::kEnd) Step();
    return std::move(found_);
  }

 private:
  void Advance() { token_ = lexer_.Next(); }
  bool Is(TokenKind kind) const { return token_.kind == kind; }
  Frame* Top() { return frames_.empty() ? nullptr : &frames_.back(); }

  void Step() {
    const Token token = token_;
    switch (token.kind) {
      case TokenKind::kName:
      case TokenKind::kQuotedName:
        Advance();
        afterOperand_ = true;
        Name(token);
        return;
      case TokenKind::kOperator:
        if (TakePlaceholder()) return;
        afterOperand_ = false;
        break;
      case TokenKind::kOpen:
        Open({.kind = Frame::Kind::kGroup});
        return;
      case TokenKind::kOpenList:
        OpenList();
        return;
      case TokenKind::kSeparator:
        Advance();
        EndEntry();
        if (Frame* frame = Top()) ++frame->argument;
        StartEntry();
        return;
      case TokenKind::kClose:
      case TokenKind::kCloseList:
        Close();
        return;
      default:
        afterOperand_ = true;
    }
    Advance();
  }

  void Open(Frame frame) {
    frame.scope = names_.size();
    frames_.push_back(std::move(frame));
    Advance();
    StartEntry();
  }

  void OpenList() {
    Frame list{.kind = Frame::Kind::kList};
    Frame* call = Top();
    // Only Let and While take a list as their first argument; the third one of While assigns as well.
    if (!afterOperand_ && call != nullptr && call->kind == Frame::Kind::kCall &&
        (call->argument == 0 || (call->argument == 2 && call->isLet))) {
      call->isLet = true;
      list.declares = true;
    }
    Open(std::move(list));
  }

  void Close() {
    EndEntry();
    if (!frames_.empty()) {
      // The names of a list belong to the call around it.
      if (frames_.back().kind != Frame::Kind::kList) names_.resize(frames_.back().scope);
      frames_.pop_back();
    }
    afterOperand_ = true;
    Advance();
  }

  // A name hides others only after its own value.
  void EndEntry() {
    Frame* frame = Top();
    if (frame == nullptr || frame->pending.empty()) return;
    names_.push_back(std::move(frame->pending));
    frame->pending.clear();
  }

  // At the start of a formula, an argument or a list's entry.
  void StartEntry() {
    afterOperand_ = false;
    Frame* frame = Top();
    const bool declares =
        frame != nullptr &&
        (frame->declares || (frame->kind == Frame::Kind::kCall && frame->isLet && frame->argument == 0));
    if (!declares || (!Is(TokenKind::kName) && !Is(TokenKind::kQuotedName))) return;
    const Token name = token_;
    const Lexer afterName = lexer_;
    Advance();
    if (Is(TokenKind::kOpenList)) SkipRepetition();
    if (token_.text == "=") {
      frame->pending = FoldCase(Unquoted(name));
      return;
    }
    lexer_ = afterName;
    token_ = name;
  }

  void SkipRepetition() {
    while (!Is(TokenKind::kCloseList) && !Is(TokenKind::kEnd)) Advance();
    Advance();
  }

  bool TakePlaceholder() {
    if (afterOperand_ || token_.text != "<") return false;
    const std::string_view placeholder = PlaceholderAt({token_.text.data(), lexer_.rest().size() + 1});
    if (placeholder.empty()) return false;
    found_.push_back({KindOfPlaceholder(placeholder), placeholder, nullptr, {}});
    lexer_.Skip(placeholder.size() - 1);
    Advance();
    afterOperand_ = true;
    return true;
  }

  void Name(const Token& token) {
    if (token.kind == TokenKind::kQuotedName) return QuotedName(Unquoted(token));
    Names(Words(token.text));
  }

  void Names(std::span<const std::string_view> words) {
    if (words.empty()) return;
    if (Is(TokenKind::kOpen)) return Call(words);
    if (Is(TokenKind::kColons)) return RelatedField(words);
    BareNames(words);
  }

  void QuotedName(std::string_view name) {
    if (const auto colons = name.find("::"); colons != std::string_view::npos) {
      return Field(AddOccurrence(name.substr(0, colons)), name.substr(0, colons), name.substr(colons + 2));
    }
    if (Is(TokenKind::kColons)) return AfterColons(AddOccurrence(name), name);
    if (const Element* field = design_.FindField(table_, name)) found_.push_back({Kind::kField, name, field, {}});
  }

  // A function's name is the last word; a custom function's name may be several words.
  void Call(std::span<const std::string_view> words) {
    std::size_t function = words.size() - 1;
    for (std::size_t first = 0; first < words.size(); ++first) {
      const std::string_view name = Join(words[first], words.back());
      if (const Element* custom = design_.Find(Kind::kCustomFunction, name)) {
        function = first;
        found_.push_back({Kind::kCustomFunction, name, custom, {}});
        break;
      }
    }
    BareNames(words.first(function));
    const std::string name = FoldCase(words.back());
    Open({.kind = Frame::Kind::kCall, .isLet = Contains(kLetNames, name), .isGet = Contains(kGetNames, name)});
  }

  // `words ::`: the longest name of an occurrence that ends here.
  void RelatedField(std::span<const std::string_view> words) {
    for (std::size_t first = 0; first < words.size(); ++first) {
      const std::string_view name = Join(words[first], words.back());
      if (design_.Find(Kind::kTableOccurrence, name) == nullptr) continue;
      BareNames(words.first(first));
      return AfterColons(AddOccurrence(name), name);
    }
    BareNames(words.first(words.size() - 1));
    AfterColons(nullptr, words.back());
  }

  const Element* AddOccurrence(std::string_view name) {
    const Element* occurrence = design_.Find(Kind::kTableOccurrence, name);
    if (occurrence != nullptr) found_.push_back({Kind::kTableOccurrence, name, occurrence, {}});
    return occurrence;
  }

  void AfterColons(const Element* occurrence, std::string_view occurrenceName) {
    Advance();
    if (Is(TokenKind::kQuotedName)) {
      Field(occurrence, occurrenceName, Unquoted(token_));
      return Advance();
    }
    if (!Is(TokenKind::kName)) return;
    const auto words = Words(token_.text);
    Advance();
    std::size_t last = words.size();
    if (occurrence != nullptr && occurrence->table != nullptr) {
      while (last > 0 && design_.FindField(occurrence->table, Join(words[0], words[last - 1])) == nullptr) --last;
    }
    if (last == 0 || occurrence == nullptr || occurrence->table == nullptr) last = WordsBeforeOperator(words);
    Field(occurrence, occurrenceName, Join(words[0], words[last - 1]));
    Names(std::span(words).subspan(last));
  }

  static std::size_t WordsBeforeOperator(std::span<const std::string_view> words) {
    std::size_t count = 1;
    while (count < words.size() && !Contains(kOperatorWords, FoldCase(words[count]))) ++count;
    return count;
  }

  void Field(const Element* occurrence, std::string_view occurrenceName, std::string_view name) {
    const Element* table = occurrence == nullptr ? nullptr : occurrence->table;
    const Element* field = table == nullptr ? nullptr : design_.FindField(table, name);
    if (occurrence != nullptr) found_.push_back({Kind::kField, name, field, occurrenceName});
  }

  // The words include operators and functions in any language. Words that the design does not contain are skipped.
  void BareNames(std::span<const std::string_view> words) {
    if (Frame* frame = Top(); frame != nullptr && frame->isGet) return;
    while (!words.empty()) {
      std::size_t count = words.size();
      while (count > 0 && !BareName(Join(words[0], words[count - 1]))) --count;
      words = words.subspan(std::max<std::size_t>(count, 1));
    }
  }

  bool BareName(std::string_view name) {
    if (std::find(names_.begin(), names_.end(), FoldCase(name)) != names_.end()) return true;
    const Element* target = design_.Find(Kind::kCustomFunction, name);
    if (target == nullptr) target = design_.FindField(table_, name);
    if (target == nullptr) return false;
    found_.push_back({target->kind, name, target, {}});
    return true;
  }

  const Design& design_;
  const Element* table_;
  Lexer lexer_;
  Token token_;
  bool afterOperand_ = false;
  std::vector<std::string> names_;  // declared by Let and While, and parameters
  std::vector<Frame> frames_;
  std::vector<FormulaReference> found_;
};

}  // namespace

std::vector<FormulaReference> FindReferences(const Design& design, std::string_view formula,
                                             const FormulaScope& scope) {
  auto found = Finder(design, formula, scope).Run();
  for (const std::string_view placeholder : PlaceholdersInComment(formula)) {
    found.push_back({KindOfPlaceholder(placeholder), placeholder, nullptr, {}});
  }
  return found;
}

}  // namespace solution
