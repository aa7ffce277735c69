// Recursive descent over:
//   SELECT [DISTINCT] { COUNT(*) | * | column, ... } FROM table [WHERE condition] [ORDER BY column [ASC|DESC], ...]
#include "sim/solution/SqlParser.h"

#include <algorithm>
#include <iterator>
#include <string>
#include <utility>

#include "sim/calc/Unicode.h"
#include "sim/solution/SqlLexer.h"

namespace sim {
namespace {

using calc::Value;

constexpr int kDeepestNesting = 100;

// Words that cannot be a name unless it is quoted.
constexpr std::u16string_view kReserved[] = {u"SELECT", u"DISTINCT", u"FROM", u"WHERE",   u"ORDER", u"BY",
                                             u"ASC",    u"DESC",     u"AND",  u"OR",      u"NOT",   u"LIKE",
                                             u"IN",     u"IS",       u"NULL", u"BETWEEN", u"COUNT"};

bool IsReserved(std::u16string_view word) {
  return std::any_of(std::begin(kReserved), std::end(kReserved),
                     [word](std::u16string_view reserved) { return calc::EqualIgnoringCase(reserved, word); });
}

class Parser {
 public:
  Parser(std::vector<SqlToken> tokens, const Solution& solution, std::span<const Value> arguments)
      : tokens_(std::move(tokens)), solution_(solution), arguments_(arguments) {}

  SqlQuery Query() {
    SqlQuery query;
    Expect(u"SELECT");
    query.distinct = Accept(u"DISTINCT");
    query.count = Accept(u"COUNT");
    const std::vector<std::u16string> names = query.count ? CountedNames() : ColumnNames();
    Expect(u"FROM");
    auto table = FindSqlTable(Name(), solution_);
    if (!table) throw SqlRefused();
    columns_ = std::move(table->columns);
    query.rows = std::move(table->rows);
    if (!query.count) query.columns = Columns(names);
    query.where = Accept(u"WHERE") ? Condition() : SqlAll({});
    if (Accept(u"ORDER")) query.order = Order(query);
    if (Current().kind != SqlToken::kEnd) throw SqlRefused();
    return query;
  }

 private:
  const SqlToken& Current() const { return tokens_[at_]; }

  bool Accept(std::u16string_view text) {
    const SqlToken& token = Current();
    const bool found = token.kind == SqlToken::kSymbol
                           ? token.text == text
                           : token.kind == SqlToken::kWord && calc::EqualIgnoringCase(token.text, text);
    if (found) ++at_;
    return found;
  }

  void Expect(std::u16string_view text) {
    if (!Accept(text)) throw SqlRefused();
  }

  std::u16string Name() {
    const SqlToken& token = Current();
    const bool isName =
        token.kind == SqlToken::kQuotedName || (token.kind == SqlToken::kWord && !IsReserved(token.text));
    if (!isName) throw SqlRefused();
    ++at_;
    return token.text;
  }

  std::vector<std::u16string> CountedNames() {
    Expect(u"(");
    Expect(u"*");
    Expect(u")");
    return {};
  }

  /// No name stands for all columns.
  std::vector<std::u16string> ColumnNames() {
    std::vector<std::u16string> names;
    if (Accept(u"*")) return names;
    do {
      names.push_back(Name());
    } while (Accept(u","));
    return names;
  }

  SqlColumn Column(std::u16string_view name) const {
    const auto found = std::find_if(columns_.begin(), columns_.end(), [name](const SqlColumn& column) {
      return calc::EqualIgnoringCase(column.name, name);
    });
    if (found == columns_.end()) throw SqlRefused();
    return *found;
  }

  std::vector<SqlColumn> Columns(const std::vector<std::u16string>& names) const {
    if (names.empty()) return columns_;
    std::vector<SqlColumn> columns;
    for (const std::u16string& name : names) columns.push_back(Column(name));
    return columns;
  }

  /// Rows that were put together by COUNT or DISTINCT can only be ordered by what is left of them.
  std::vector<SqlOrder> Order(const SqlQuery& query) {
    Expect(u"BY");
    std::vector<SqlOrder> order;
    do {
      SqlOrder by{.column = Column(Name())};
      const bool selected = std::any_of(query.columns.begin(), query.columns.end(),
                                        [&by](const SqlColumn& column) { return column.name == by.column.name; });
      if ((query.count || query.distinct) && !selected) throw SqlRefused();
      by.descending = Accept(u"DESC");
      if (!by.descending) Accept(u"ASC");
      order.push_back(by);
    } while (Accept(u","));
    return order;
  }

  SqlCondition Condition() {
    if (++depth_ > kDeepestNesting) throw SqlRefused();
    std::vector<SqlCondition> alternatives;
    do {
      std::vector<SqlCondition> all;
      do {
        all.push_back(Negatable());
      } while (Accept(u"AND"));
      alternatives.push_back(SqlAll(std::move(all)));
    } while (Accept(u"OR"));
    --depth_;
    return SqlAny(std::move(alternatives));
  }

  SqlCondition Negatable() {
    bool negative = false;
    while (Accept(u"NOT")) negative = !negative;
    SqlCondition condition;
    if (Accept(u"(")) {
      condition = Condition();
      Expect(u")");
    } else {
      condition = Predicate();
    }
    return negative ? SqlNot(std::move(condition)) : condition;
  }

  SqlCondition Predicate() {
    const SqlOperand left = Operand();
    if (Current().kind == SqlToken::kSymbol && IsSqlComparison(Current().text)) {
      const std::u16string symbol = tokens_[at_++].text;
      return SqlComparison(left, symbol, Operand());
    }
    if (Accept(u"IS")) {
      const bool negative = Accept(u"NOT");
      Expect(u"NULL");
      return negative ? SqlNot(SqlIsNull(left)) : SqlIsNull(left);
    }
    const bool negative = Accept(u"NOT");
    SqlCondition condition = Membership(left);
    return negative ? SqlNot(std::move(condition)) : condition;
  }

  /// The predicates that have a form with NOT.
  SqlCondition Membership(const SqlOperand& left) {
    if (Accept(u"LIKE")) return SqlLike(left, Operand());
    if (Accept(u"BETWEEN")) {
      SqlCondition from = SqlComparison(left, u">=", Operand());
      Expect(u"AND");
      return SqlAll({std::move(from), SqlComparison(left, u"<=", Operand())});
    }
    Expect(u"IN");
    Expect(u"(");
    std::vector<SqlCondition> members;
    do {
      members.push_back(SqlComparison(left, u"=", Operand()));
    } while (Accept(u","));
    Expect(u")");
    return SqlAny(std::move(members));
  }

  SqlOperand Operand() {
    const SqlToken& token = Current();
    if (token.kind == SqlToken::kText) {
      ++at_;
      return {SqlType::kText, std::nullopt, Value::OfText(token.text)};
    }
    if (token.kind == SqlToken::kNumber) {
      ++at_;
      return {SqlType::kNumber, std::nullopt, Value::OfNumber(calc::Number::Parse(token.text).value_or(0))};
    }
    if (Accept(u"?")) return Argument();
    const SqlColumn column = Column(Name());
    return {column.type, column, Value()};
  }

  SqlOperand Argument() {
    if (nextArgument_ == arguments_.size()) throw SqlRefused();
    const Value& value = arguments_[nextArgument_++];
    SqlType type = SqlType::kAny;
    if (!value.IsEmpty() && value.type() == calc::Type::kText) type = SqlType::kText;
    if (value.type() == calc::Type::kNumber) type = SqlType::kNumber;
    return {type, std::nullopt, value};
  }

  std::vector<SqlToken> tokens_;
  std::size_t at_ = 0;
  const Solution& solution_;
  std::span<const Value> arguments_;
  std::size_t nextArgument_ = 0;
  std::vector<SqlColumn> columns_;
  int depth_ = 0;
};

}  // namespace

SqlQuery ParseSql(std::u16string_view sql, bool lenient, const Solution& solution, std::span<const Value> arguments) {
  return Parser(SqlTokens(sql, lenient), solution, arguments).Query();
}

}  // namespace sim
