// The schema builder is linear: a field costs the same in a large file as in a small one, the host's own work excluded.
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <string>
#include <utility>
#include <vector>

#include "calc/Unicode.h"
#include "core/HostText.h"
#include "schema/SchemaBuilder.h"
#include "wrapper/Host.h"

namespace {

using Clock = std::chrono::steady_clock;
using Seconds = std::chrono::duration<double>;

constexpr int kFieldsPerTable = 50;
constexpr int kSmallTables = 200;
constexpr int kLargeTables = 2000;
constexpr double kDemanded = 1.3;
constexpr int kRounds = 15;

std::string Name(const char* what, int number) { return what + std::to_string(number); }

// Answers like a file with that many tables, by the query or only by the design functions.
class Host : public wrapper::Host {
 public:
  Host(int tables, bool answersQuery) : tables_(tables) {
    std::string rows, tableNames, fieldNames;
    for (int field = 0; field < kFieldsPerTable; ++field) fieldNames += Name("A Field Name ", field) + "\r";
    for (int table = 0; table < tables; ++table) {
      tableNames += Name("Table Occurrence ", 100000 + table) + "\r";
      for (int field = 0; field < kFieldsPerTable; ++field) {
        rows += Name("Table Occurrence ", 100000 + table) + "||" + Name("A Field Name ", field) + "||varchar||Normal\r";
      }
    }
    rows_ = calc::Value::OfText(calc::ToUtf16(answersQuery ? rows : "?"));
    tableNames_ = calc::Value::OfText(calc::ToUtf16(tableNames));
    fieldNames_ = calc::Value::OfText(calc::ToUtf16(fieldNames));
    wrapper::SetHost(this);
    BuildSchema(env_.get(), "");
    std::swap(expressions_, asked_);
  }

  short Evaluate(std::uint64_t, std::u16string_view expression, calc::Value& result) override {
    if (expressions_.empty()) asked_.push_back(calc::ToUtf8(expression));
    if (expression.starts_with(u"ExecuteSQL")) result = rows_;
    if (expression.starts_with(u"TableNames")) result = tableNames_;
    if (expression.starts_with(u"FieldNames")) result = fieldNames_;
    return 0;
  }

  // One round: the builder with its evaluations, and the evaluations alone.
  void Measure() {
    wrapper::SetHost(this);
    auto start = Clock::now();
    const std::string schema = BuildSchema(env_.get(), "");
    bestWhole_ = std::min<Seconds>(bestWhole_, Clock::now() - start);
    start = Clock::now();
    for (const auto& expression : expressions_) EvalCalc(env_.get(), expression.c_str());
    bestEvaluations_ = std::min<Seconds>(bestEvaluations_, Clock::now() - start);
  }

  double NanosecondsPerField() const {
    return (bestWhole_ - bestEvaluations_).count() * 1e9 / (tables_ * kFieldsPerTable);
  }

 private:
  int tables_;
  calc::Value rows_, tableNames_, fieldNames_;
  fmx::ExprEnvUniquePtr env_;
  std::vector<std::string> asked_, expressions_;
  Seconds bestWhole_{1e9}, bestEvaluations_{1e9};
};

double Ratio(bool answersQuery) {
  Host small(kSmallTables, answersQuery), large(kLargeTables, answersQuery);
  for (int round = 0; round < kRounds; ++round) {
    small.Measure();
    large.Measure();
  }
  const double ratio = large.NanosecondsPerField() / small.NanosecondsPerField();
  std::printf("%-34s %10.0f %10.0f %8.2f %8.2f\n",
              answersQuery ? "BuildSchema by the query" : "BuildSchema by design functions",
              small.NanosecondsPerField(), large.NanosecondsPerField(), ratio, kDemanded);
  return ratio;
}

}  // namespace

int main() {
  std::printf("%-34s %10s %10s %8s %8s\n", "ns per field, of so many", "10,000", "100,000", "ratio", "at most");
  const double byQuery = Ratio(true);
  const double byNames = Ratio(false);
  wrapper::SetHost(nullptr);
  if (std::max(byQuery, byNames) <= kDemanded) return 0;
  std::fprintf(stderr, "BuildSchema is not linear\n");
  return 1;
}
