// A recursive descent over the levels of operators, with names resolved on the way.
#include "calc/Parser.h"

#include <algorithm>
#include <type_traits>
#include <utility>

#include "calc/Callables.h"
#include "calc/Errors.h"
#include "calc/Lexer.h"
#include "calc/StackGuard.h"
#include "calc/Unicode.h"

namespace calc {
namespace {

// How tightly binary operators bind, in the order of Operator.
constexpr int kLevels[] = {
    5, 5,              // + -
    6, 6,              // * /
    7,                 // ^
    4,                 // &
    3, 3, 3, 3, 3, 3,  // comparisons
    2,                 // and
    1, 1,              // or xor
    0,                 // not, a prefix operator
};

int LevelOf(Operator op) { return kLevels[static_cast<std::size_t>(op)]; }

std::unique_ptr<Node> Own(Node node) { return std::make_unique<Node>(std::move(node)); }

Node MakeCall(const Callable& callable, std::vector<Node> arguments) {
  return std::visit(
      [&arguments](auto target) {
        if constexpr (std::is_pointer_v<decltype(target)>) {
          return Node{Call<std::remove_cvref_t<decltype(*target)>>{target, std::move(arguments)}};
        } else {
          return Node();
        }
      },
      callable.target);
}

class Parser {
 public:
  Parser(std::u16string_view source, Environment& environment, std::span<const std::u16string> parameters)
      : lexer_(source), environment_(environment), stackLimit_(std::max(StackLeft() / 2, kStackReserve)) {
    for (const std::u16string& parameter : parameters) Declare(FoldCase(parameter), names_.size());
    Advance();
  }

  Formula ParseFormula() {
    if (token_.kind == TokenKind::kEnd) return {Node{Literal{}}, slotCount_};
    Node root = ParseExpression();
    if (token_.kind != TokenKind::kEnd) FailAfterOperand();
    return {std::move(root), slotCount_};
  }

 private:
  void Advance() { token_ = lexer_.Next(); }
  bool Is(TokenKind kind) const { return token_.kind == kind; }
  bool Take(TokenKind kind) {
    if (!Is(kind)) return false;
    Advance();
    return true;
  }
  void Expect(TokenKind kind) {
    if (!Take(kind)) FailAfterOperand();
  }

  // An operand is complete and the next token cannot follow it.
  [[noreturn]] void FailAfterOperand() const {
    if (Is(TokenKind::kOpen)) throw SyntaxError{errors::kNotAFunction};
    const bool unclosed = Is(TokenKind::kEnd) || Is(TokenKind::kClose) || Is(TokenKind::kCloseList);
    throw SyntaxError{unclosed ? errors::kUnbalancedParenthesis : errors::kOperatorExpected};
  }

  // One argument is complete; a call that ends here has too few.
  void ExpectSeparator() {
    if (Is(TokenKind::kClose)) throw SyntaxError{errors::kTooFewArguments};
    Expect(TokenKind::kSeparator);
  }

  bool AtBinaryOperator(int minimum) const { return Is(TokenKind::kOperator) && LevelOf(token_.op) >= minimum; }

  Node ParseExpression(int minimum = 1);
  Node ParsePrefixed();
  Node ParseOperand();
  Node ParseName();
  Node ParseField(std::u16string name);
  Variable ParseVariable();
  Node ParseCall(const std::u16string& name);
  Node ParseGet();
  Node ParseForm(Form form);
  Node ParseLet(size_t scope);
  Node ParseWhile(size_t scope);
  Node NameAlone(std::u16string name);
  Repetition ParseRepetition();
  std::vector<Node> ParseArguments(const Signature& signature);
  void ParseList(std::vector<Node>& arguments, int size);
  std::vector<Assignment> ParseAssignments(size_t scope);
  Assignment ParseAssignment(size_t scope);

  int Declare(std::u16string name, size_t scope);
  const int* FindSlot(std::u16string_view name) const;

  Lexer lexer_;
  Token token_;
  Environment& environment_;
  const size_t stackLimit_;  // trees need stack again when they run and when they are destroyed
  std::vector<std::pair<std::u16string, int>> names_;
  int slotCount_ = 0;
};

// A name that its own scope (the names from `scope` on) already has keeps its slot.
int Parser::Declare(std::u16string name, size_t scope) {
  const auto found = std::find_if(names_.begin() + static_cast<std::ptrdiff_t>(scope), names_.end(),
                                  [&name](const auto& entry) { return entry.first == name; });
  if (found != names_.end()) return found->second;
  names_.emplace_back(std::move(name), slotCount_);
  return slotCount_++;
}

const int* Parser::FindSlot(std::u16string_view name) const {
  const auto found =
      std::find_if(names_.rbegin(), names_.rend(), [name](const auto& entry) { return entry.first == name; });
  return found == names_.rend() ? nullptr : &found->second;
}

Node Parser::ParseExpression(int minimum) {
  Node left = ParsePrefixed();
  while (AtBinaryOperator(minimum)) {
    const int level = LevelOf(token_.op);
    Chain chain{Own(std::move(left)), {}};
    while (Is(TokenKind::kOperator) && LevelOf(token_.op) == level) {
      const Operator op = token_.op;
      Advance();
      chain.links.push_back({op, ParseExpression(level + 1)});
    }
    left = Node{std::move(chain)};
  }
  return left;
}

Node Parser::ParsePrefixed() {
  if (StackLeft() < stackLimit_) throw SyntaxError{errors::kTooDeep};
  std::vector<Operator> operators;
  while (Is(TokenKind::kOperator) &&
         (token_.op == Operator::kAdd || token_.op == Operator::kSubtract || token_.op == Operator::kNot)) {
    operators.push_back(token_.op);
    Advance();
  }
  Node operand = ParseOperand();
  if (operators.empty()) return operand;
  return Node{Prefixed{std::move(operators), Own(std::move(operand))}};
}

Node Parser::ParseOperand() {
  switch (token_.kind) {
    case TokenKind::kText: {
      Value value = Value::OfText(std::move(token_.text));
      Advance();
      return Node{Literal{std::move(value)}};
    }
    case TokenKind::kNumber: {
      Value value = token_.number.InRange() ? Value::OfNumber(token_.number) : Value::OfError(errors::kOutOfRange);
      Advance();
      return Node{Literal{std::move(value)}};
    }
    case TokenKind::kOpen: {
      Advance();
      Node inner = ParseExpression();
      Expect(TokenKind::kClose);
      return inner;
    }
    case TokenKind::kName:
    case TokenKind::kQuotedName:
      return ParseName();
    case TokenKind::kLocalVariable:
    case TokenKind::kGlobalVariable:
      return Node{ParseVariable()};
    case TokenKind::kOpenList:
      throw SyntaxError{errors::kListNotAllowed};
    default:
      throw SyntaxError{errors::kOperandExpected};
  }
}

Repetition Parser::ParseRepetition() {
  if (!Take(TokenKind::kOpenList)) return nullptr;
  Repetition repetition = Own(ParseExpression());
  Expect(TokenKind::kCloseList);
  return repetition;
}

Variable Parser::ParseVariable() {
  Variable variable{Is(TokenKind::kGlobalVariable), std::move(token_.text), nullptr};
  Advance();
  variable.repetition = ParseRepetition();
  return variable;
}

Node Parser::ParseName() {
  const bool quoted = Is(TokenKind::kQuotedName);
  std::u16string name = std::move(token_.text);
  Advance();
  if (quoted || Is(TokenKind::kColons)) return ParseField(std::move(name));
  return Is(TokenKind::kOpen) ? ParseCall(name) : NameAlone(std::move(name));
}

Node Parser::ParseField(std::u16string name) {
  FieldName field{{}, std::move(name), nullptr};
  if (Take(TokenKind::kColons)) {
    if (!Is(TokenKind::kName) && !Is(TokenKind::kQuotedName)) throw SyntaxError{errors::kNameMissing};
    field.occurrence = std::exchange(field.field, std::move(token_.text));
    Advance();
  }
  field.repetition = ParseRepetition();
  return Node{std::move(field)};
}

// A name without parentheses: a local name, a function that needs no arguments, else a field.
Node Parser::NameAlone(std::u16string name) {
  if (const int* slot = FindSlot(FoldCase(name))) return Node{LocalName{*slot}};
  const Callable callable = FindCallable(name, environment_);
  if (!callable.IsKnown()) return ParseField(std::move(name));
  if (callable.signature.minArguments > 0) throw SyntaxError{errors::kOperandExpected};
  return MakeCall(callable, {});
}

Node Parser::ParseCall(const std::u16string& name) {
  const Callable callable = FindCallable(name, environment_);
  if (!callable.IsKnown()) {
    environment_.ReportUnknownName(name);
    throw SyntaxError{errors::kNotAFunction};
  }
  Advance();
  if (Is(TokenKind::kClose) && callable.signature.minArguments > 0) throw SyntaxError{errors::kOperandExpected};
  if (const auto* form = std::get_if<Form>(&callable.target)) return ParseForm(*form);
  return MakeCall(callable, ParseArguments(callable.signature));
}

Node Parser::ParseForm(Form form) {
  const size_t scope = names_.size();
  Node node = form == Form::kGet ? ParseGet() : form == Form::kLet ? ParseLet(scope) : ParseWhile(scope);
  names_.resize(scope);
  if (Is(TokenKind::kSeparator)) throw SyntaxError{errors::kTooManyArguments};
  Expect(TokenKind::kClose);
  return node;
}

// Through the closing parenthesis.
std::vector<Node> Parser::ParseArguments(const Signature& signature) {
  std::vector<Node> arguments;
  int single = 0;
  // FileMaker lets one separator end the list: people line up the rows of a Case.
  for (bool more = !Is(TokenKind::kClose); more; more = Take(TokenKind::kSeparator) && !Is(TokenKind::kClose)) {
    if (Is(TokenKind::kOpenList) && signature.listSize != 0 && !arguments.empty()) {
      ParseList(arguments, signature.listSize);
    } else {
      arguments.push_back(ParseExpression());
      ++single;
    }
  }
  Expect(TokenKind::kClose);
  const auto count = static_cast<int>(arguments.size());
  const bool incomplete = signature.listSize > 0 && (count - 1) % signature.listSize != 0;
  if (count < signature.minArguments || incomplete) throw SyntaxError{errors::kTooFewArguments};
  if (signature.maxArguments != kAnyNumber && single > signature.maxArguments) {
    throw SyntaxError{errors::kTooManyArguments};
  }
  return arguments;
}

void Parser::ParseList(std::vector<Node>& arguments, int size) {
  const size_t before = arguments.size();
  do {
    Advance();
    arguments.push_back(ParseExpression());
  } while (Is(TokenKind::kSeparator));
  Expect(TokenKind::kCloseList);
  const auto count = static_cast<int>(arguments.size() - before);
  if (size == kAnyNumber || count == size) return;
  throw SyntaxError{count < size ? errors::kTooFewArguments : errors::kTooManyArguments};
}

Node Parser::ParseGet() {
  if (!Is(TokenKind::kName)) throw SyntaxError{errors::kInvalidGetParameter};
  GetCall call{std::move(token_.text)};
  if (!environment_.Get(call.parameter)) throw SyntaxError{errors::kInvalidGetParameter};
  Advance();
  return Node{std::move(call)};
}

Node Parser::ParseLet(size_t scope) {
  LetCall call{ParseAssignments(scope), nullptr};
  ExpectSeparator();
  call.result = Own(ParseExpression());
  return Node{std::move(call)};
}

Node Parser::ParseWhile(size_t scope) {
  WhileCall call;
  call.initial = ParseAssignments(scope);
  ExpectSeparator();
  call.condition = Own(ParseExpression());
  ExpectSeparator();
  call.logic = ParseAssignments(scope);
  ExpectSeparator();
  call.result = Own(ParseExpression());
  return Node{std::move(call)};
}

std::vector<Assignment> Parser::ParseAssignments(size_t scope) {
  std::vector<Assignment> assignments;
  if (!Take(TokenKind::kOpenList)) {
    assignments.push_back(ParseAssignment(scope));
    return assignments;
  }
  if (Take(TokenKind::kCloseList)) return assignments;
  do {
    assignments.push_back(ParseAssignment(scope));
  } while (Take(TokenKind::kSeparator));
  Expect(TokenKind::kCloseList);
  return assignments;
}

Assignment Parser::ParseAssignment(size_t scope) {
  Assignment assignment;
  std::u16string name;
  if (Is(TokenKind::kLocalVariable) || Is(TokenKind::kGlobalVariable)) {
    assignment.target = ParseVariable();
  } else if (Is(TokenKind::kName) || Is(TokenKind::kQuotedName)) {
    name = FoldCase(token_.text);
    Advance();
  } else {
    throw SyntaxError{errors::kNameMissing};
  }
  if (!Is(TokenKind::kOperator) || token_.op != Operator::kEqual) throw SyntaxError{errors::kOperatorExpected};
  Advance();
  assignment.value = ParseExpression();
  // Only now: its own expression still sees the name it hides.
  if (!name.empty()) assignment.target = LocalName{Declare(std::move(name), scope)};
  return assignment;
}

}  // namespace

int Parse(std::u16string_view source, Environment& environment, std::span<const std::u16string> parameters,
          Formula& formula) {
  try {
    formula = Parser(source, environment, parameters).ParseFormula();
    return 0;
  } catch (const SyntaxError& error) {
    return error.code;
  }
}

}  // namespace calc
