// Predicates of a WHERE clause.
#include "solution/SqlConditions.h"

#include <algorithm>
#include <iterator>
#include <string>
#include <utility>

#include "solution/SqlLexer.h"

namespace sim {
namespace {

using calc::Value;

struct Comparison {
  std::u16string_view symbol;
  bool (*holds)(int order);
};

constexpr Comparison kComparisons[] = {
    {u"=", [](int order) { return order == 0; }},  {u"<>", [](int order) { return order != 0; }},
    {u"<", [](int order) { return order < 0; }},   {u">", [](int order) { return order > 0; }},
    {u"<=", [](int order) { return order <= 0; }}, {u">=", [](int order) { return order >= 0; }},
};

const Comparison* FindComparison(std::u16string_view symbol) {
  const auto found = std::find_if(std::begin(kComparisons), std::end(kComparisons),
                                  [symbol](const Comparison& candidate) { return candidate.symbol == symbol; });
  return found == std::end(kComparisons) ? nullptr : found;
}

void RequireSameType(SqlType a, SqlType b) {
  if (a != b && a != SqlType::kAny && b != SqlType::kAny) throw SqlRefused();
}

Value Evaluate(const SqlOperand& operand, const SqlRow& row) {
  return operand.column ? operand.column->value(row) : operand.constant;
}

// After a mismatch the last % takes one more character, so the time is at most the product of the lengths.
bool Matches(std::u16string_view text, std::u16string_view pattern) {
  std::size_t at = 0;
  std::size_t wanted = 0;
  std::size_t resumeAt = 0;
  std::optional<std::size_t> lastPercent;
  while (at < text.size()) {
    if (wanted < pattern.size() && pattern[wanted] == u'%') {
      lastPercent = wanted++;
      resumeAt = at;
    } else if (wanted < pattern.size() && (pattern[wanted] == u'_' || pattern[wanted] == text[at])) {
      ++at;
      ++wanted;
    } else if (lastPercent) {
      at = ++resumeAt;
      wanted = *lastPercent + 1;
    } else {
      return false;
    }
  }
  return pattern.find_first_not_of(u'%', wanted) == pattern.npos;
}

// A condition that is `decisive` decides the result: false for all, true for any.
SqlTruth Combine(const std::vector<SqlCondition>& conditions, const SqlRow& row, bool decisive) {
  bool unknown = false;
  for (const SqlCondition& condition : conditions) {
    const SqlTruth truth = condition(row);
    if (truth == decisive) return decisive;
    if (!truth) unknown = true;
  }
  return unknown ? SqlTruth() : !decisive;
}

}  // namespace

int CompareSql(const Value& a, const Value& b) {
  if (a.type() == calc::Type::kText || b.type() == calc::Type::kText) return a.AsText().compare(b.AsText());
  const auto order = a.AsNumber() <=> b.AsNumber();
  return (order > 0) - (order < 0);
}

bool IsSqlComparison(std::u16string_view symbol) { return FindComparison(symbol) != nullptr; }

SqlCondition SqlComparison(const SqlOperand& left, std::u16string_view symbol, const SqlOperand& right) {
  RequireSameType(left.type, right.type);
  return [left, right, holds = FindComparison(symbol)->holds](const SqlRow& row) -> SqlTruth {
    const Value a = Evaluate(left, row);
    const Value b = Evaluate(right, row);
    if (a.IsEmpty() || b.IsEmpty()) return std::nullopt;
    return holds(CompareSql(a, b));
  };
}

SqlCondition SqlLike(const SqlOperand& text, const SqlOperand& pattern) {
  RequireSameType(text.type, SqlType::kText);
  RequireSameType(pattern.type, SqlType::kText);
  return [text, pattern](const SqlRow& row) -> SqlTruth {
    const Value subject = Evaluate(text, row);
    const Value wanted = Evaluate(pattern, row);
    if (subject.IsEmpty() || wanted.IsEmpty()) return std::nullopt;
    return Matches(subject.AsText(), wanted.AsText());
  };
}

SqlCondition SqlIsNull(const SqlOperand& operand) {
  return [operand](const SqlRow& row) -> SqlTruth { return Evaluate(operand, row).IsEmpty(); };
}

SqlCondition SqlNot(SqlCondition condition) {
  return [condition = std::move(condition)](const SqlRow& row) -> SqlTruth {
    const SqlTruth truth = condition(row);
    return truth ? SqlTruth(!*truth) : truth;
  };
}

SqlCondition SqlAll(std::vector<SqlCondition> conditions) {
  return [conditions = std::move(conditions)](const SqlRow& row) { return Combine(conditions, row, false); };
}

SqlCondition SqlAny(std::vector<SqlCondition> conditions) {
  return [conditions = std::move(conditions)](const SqlRow& row) { return Combine(conditions, row, true); };
}

}  // namespace sim
