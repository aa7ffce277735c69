// Tables of words.
#include "solution/SqlWords.h"

#include <algorithm>
#include <iterator>

#include "calc/Unicode.h"

namespace sim {
namespace {

constexpr std::u16string_view kKnown[] = {u"SELECT", u"DISTINCT", u"FROM", u"WHERE", u"ORDER", u"BY",
                                          u"ASC",    u"DESC",     u"AND",  u"OR",    u"NOT",   u"LIKE",
                                          u"IN",     u"IS",       u"NULL", u"AS",    u"COUNT", u"BETWEEN"};
constexpr std::u16string_view kUnknown[] = {u"ALL",    u"CASE",   u"ESCAPE", u"EXISTS", u"FETCH", u"FOR",
                                            u"GROUP",  u"HAVING", u"INNER",  u"JOIN",   u"LEFT",  u"UNION",
                                            u"OFFSET", u"+",      u"-",      u"/",      u"||",    u"{"};
constexpr std::u16string_view kFunctions[] = {
    u"ABS",      u"ANY",     u"ATAN",    u"AVG",     u"CAST",     u"CEIL",         u"CEILING",   u"CHR",
    u"COALESCE", u"CURDATE", u"CURTIME", u"DATEVAL", u"DAY",      u"DAYNAME",      u"DAYOFWEEK", u"DEG",
    u"DEGREES",  u"EXP",     u"FLOOR",   u"HOUR",    u"INT",      u"LENGTH",       u"LN",        u"LOG",
    u"LOWER",    u"LTRIM",   u"MAX",     u"MIN",     u"MINUTE",   u"MOD",          u"MONTH",     u"MONTHNAME",
    u"NULLIF",   u"NUMVAL",  u"PI",      u"RADIANS", u"RIGHT",    u"ROUND",        u"RTRIM",     u"SECOND",
    u"SIGN",     u"SIN",     u"SPACE",   u"SQRT",    u"STRVAL",   u"SUBSTR",       u"SUBSTRING", u"SUM",
    u"TAN",      u"TIMEVAL", u"TRIM",    u"UPPER",   u"USERNAME", u"TIMESTAMPVAL", u"YEAR"};

template <std::size_t size>
bool Has(const std::u16string_view (&words)[size], std::u16string_view word) {
  return std::any_of(std::begin(words), std::end(words),
                     [word](std::u16string_view entry) { return calc::EqualIgnoringCase(entry, word); });
}

}  // namespace

bool IsReservedSqlWord(std::u16string_view word) { return Has(kKnown, word) || Has(kUnknown, word); }

bool IsUnknownSqlPart(std::u16string_view text) { return Has(kUnknown, text); }

bool IsSqlFunction(std::u16string_view word) { return Has(kFunctions, word); }

}  // namespace sim
