// Any text is a query or gives "?"; the lenient reading differs from the strict one only where quotes are doubled.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "sim/calc/Unicode.h"
#include "sim/solution/Sql.h"
#include "tests/solution/SampleSolution.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const sim::Solution solution = SampleSolution();
  static const calc::Value arguments[] = {calc::Value::OfText(u"O%"), calc::Value::OfNumber(2), calc::Value()};
  const std::u16string sql = calc::ToUtf16({reinterpret_cast<const char*>(data), size});
  const std::u16string strict = sim::ExecuteSql(sql, solution, u"", u"", arguments, {});
  const std::u16string lenient = sim::ExecuteSql(sql, solution, u"", u"", arguments, {.lenientSql = true});
  if (strict != lenient && sql.find(u"''") == sql.npos) std::abort();
  return 0;
}
