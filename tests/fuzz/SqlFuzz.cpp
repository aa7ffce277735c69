// Any text is a query or gives "?"; the lenient reading differs from the strict one only where quotes are doubled.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "sim/calc/Unicode.h"
#include "sim/solution/Sql.h"

namespace {

sim::Solution MakeSolution() {
  sim::Solution solution;
  solution.name = u"Sales";
  solution.baseTables.resize(1);
  solution.baseTables[0].id = 129;
  solution.baseTables[0].name = u"Orders";
  for (const char16_t* name : {u"Title", u"Number", u"Due"}) {
    sim::Field& field = solution.baseTables[0].fields.emplace_back();
    field.id = static_cast<int>(solution.baseTables[0].fields.size());
    field.name = name;
    field.dataType = static_cast<sim::DataType>(field.id - 1);
  }
  solution.occurrences = {{1, u"Orders", 129}, {2, u"SysLog", 129}, {3, u"Remote", {}}};
  return solution;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const sim::Solution solution = MakeSolution();
  static const calc::Value arguments[] = {calc::Value::OfText(u"O%"), calc::Value::OfNumber(2), calc::Value()};
  const std::u16string sql = calc::ToUtf16({reinterpret_cast<const char*>(data), size});
  const std::u16string strict = sim::ExecuteSql(sql, solution, u"", u"", arguments, {});
  const std::u16string lenient = sim::ExecuteSql(sql, solution, u"", u"", arguments, {.lenientSql = true});
  if (strict != lenient && sql.find(u"''") == sql.npos) std::abort();
  return 0;
}
