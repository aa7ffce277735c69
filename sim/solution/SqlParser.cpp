// Recursive descent over:
//   SELECT [DISTINCT] { COUNT(*) | * | column, ... } FROM table [[AS] alias] [WHERE condition]
//   [ORDER BY column [ASC|DESC], ...]
// where a column may be qualified by the alias or, without one, by the table.
#include "solution/SqlParser.h"

#include <algorithm>
#include <string>
#include <utility>

#include "calc/Unicode.h"
#include "solution/SqlLexer.h"
#include "solution/SqlWords.h"

namespace sim {
namespace {

using calc::Value;

constexpr int kDeepestNesting = 100;

struct SqlName {
  std::u16string qualifier;  ///< empty when there is none
  std::u16string name;
};

class Parser {
 public:
  Parser(std::vector<SqlToken> tokens, const Solution& solution, std::span<const Value> arguments)
      : tokens_(std::move(tokens)), solution_(solution), arguments_(arguments) {}

  SqlQuery Query() {
    SqlQuery query;
    Expect(u"SELECT");
    query.distinct = Accept(u"DISTINCT");
    query.count = Accept(u"COUNT");
    const std::vector<SqlName> names = query.count ? CountedNames() : ColumnNames();
    Expect(u"FROM");
    query.rows = Table();
    if (!query.count) query.columns = Columns(names);
    query.where = Accept(u"WHERE") ? Condition() : SqlAll({});
    if (Accept(u"ORDER")) query.order = Order(query);
    if (Current().kind != SqlToken::kEnd) Refuse();
    return query;
  }

 private:
  const SqlToken& Current() const { return tokens_[at_]; }

  static bool IsAt(const SqlToken& token, std::u16string_view text) {
    if (token.kind == SqlToken::kSymbol) return token.text == text;
    return token.kind == SqlToken::kWord && calc::EqualIgnoringCase(token.text, text);
  }
  bool Is(std::u16string_view text) const { return IsAt(Current(), text); }

  bool Accept(std::u16string_view text) {
    const bool found = Is(text);
    if (found) ++at_;
    return found;
  }

  void Expect(std::u16string_view text) {
    if (!Accept(text)) Refuse();
  }

  /// The current token is not allowed here, as far as the simulator knows. With GROUP BY it might.
  [[noreturn]] void Refuse() const {
    const SqlToken& token = Current();
    const bool quoted = token.kind == SqlToken::kQuotedName || token.kind == SqlToken::kText;
    if (!quoted && IsUnknownSqlPart(token.text)) throw SqlUnknown{token.text};
    for (const SqlToken& other : tokens_) {
      if (IsAt(other, u"GROUP")) throw SqlUnknown{other.text};
    }
    throw SqlRefused();
  }

  void UnknownIf(bool unknown, std::u16string_view part) const {
    if (unknown) throw SqlUnknown{std::u16string(part)};
  }

  bool IsName() const {
    const SqlToken& token = Current();
    return token.kind == SqlToken::kQuotedName || (token.kind == SqlToken::kWord && !IsReservedSqlWord(token.text));
  }

  std::u16string Name() {
    if (!IsName()) Refuse();
    const SqlToken& token = tokens_[at_++];
    UnknownIf(token.kind == SqlToken::kWord && Is(u"(") && IsSqlFunction(token.text), token.text);
    return token.text;
  }

  SqlName ColumnName() {
    SqlName column{{}, Name()};
    if (!Accept(u".")) return column;
    UnknownIf(Is(u"*"), u"all columns of one table");
    column.qualifier = std::exchange(column.name, Name());
    return column;
  }

  std::vector<SqlName> CountedNames() {
    Expect(u"(");
    UnknownIf(IsName() || Is(u"DISTINCT"), u"COUNT of a column");
    Expect(u"*");
    Expect(u")");
    return {};
  }

  /// An empty list means all columns.
  std::vector<SqlName> ColumnNames() {
    std::vector<SqlName> names;
    if (Accept(u"*")) return names;
    do {
      UnknownIf(Current().kind == SqlToken::kText || Current().kind == SqlToken::kNumber, u"a value as a column");
      names.push_back(ColumnName());
      UnknownIf(Is(u"*"), u"*");
      UnknownIf(Is(u"AS"), u"AS after a column");
    } while (Accept(u","));
    return names;
  }

  /// Finds the table, with its alias, and its columns; returns its rows.
  std::vector<SqlRow> Table() {
    qualifier_ = Name();
    auto table = FindSqlTable(qualifier_, solution_);
    if (!table) throw SqlRefused();
    if (Accept(u"AS") || IsName()) qualifier_ = Name();
    UnknownIf(Is(u","), u"more than one table");
    columns_ = std::move(table->columns);
    return std::move(table->rows);
  }

  SqlColumn Column(const SqlName& wanted) const {
    const bool foreign = !wanted.qualifier.empty() && !calc::EqualIgnoringCase(wanted.qualifier, qualifier_);
    const auto found = std::find_if(columns_.begin(), columns_.end(), [&wanted](const SqlColumn& column) {
      return calc::EqualIgnoringCase(column.name, wanted.name);
    });
    if (foreign || found == columns_.end()) throw SqlRefused();
    return *found;
  }

  std::vector<SqlColumn> Columns(const std::vector<SqlName>& names) const {
    if (names.empty()) return columns_;
    std::vector<SqlColumn> columns;
    for (const SqlName& name : names) columns.push_back(Column(name));
    return columns;
  }

  /// Rows that COUNT or DISTINCT has combined can only be ordered by the columns of the result.
  std::vector<SqlOrder> Order(const SqlQuery& query) {
    Expect(u"BY");
    std::vector<SqlOrder> order;
    do {
      UnknownIf(Current().kind == SqlToken::kNumber, u"ORDER BY a column's number");
      SqlOrder by{.column = Column(ColumnName())};
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
    UnknownIf(++depth_ > kDeepestNesting, u"conditions nested this deeply");
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
    UnknownIf(Is(u"("), u"a value in parentheses");
    UnknownIf(Is(u"SELECT"), u"SELECT in a condition");
    const SqlColumn column = Column(ColumnName());
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
  std::u16string qualifier_;
  std::vector<SqlColumn> columns_;
  int depth_ = 0;
};

}  // namespace

SqlQuery ParseSql(std::u16string_view sql, bool lenient, const Solution& solution, std::span<const Value> arguments) {
  return Parser(SqlTokens(sql, lenient), solution, arguments).Query();
}

}  // namespace sim
