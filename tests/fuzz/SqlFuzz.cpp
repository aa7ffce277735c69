// Any text is a query or gives "?". Lenient and strict mode differ only where quotes are doubled.
#include "calc/Unicode.h"
#include "fuzz/Fuzz.h"
#include "sim/solution/SampleSolution.h"
#include "solution/Sql.h"

void Try(const std::string& input) {
  static const sim::Solution solution = SampleSolution();
  static const calc::Value arguments[] = {calc::Value::OfText(u"O%"), calc::Value::OfNumber(2), calc::Value()};
  const std::u16string sql = calc::ToUtf16(input);
  const std::u16string strict = sim::ExecuteSql(sql, solution, u"", u"", arguments, {});
  const std::u16string lenient = sim::ExecuteSql(sql, solution, u"", u"", arguments, {.lenientSql = true});
  Check(strict == lenient || sql.find(u"''") != sql.npos);
}
