// Splits a query into tokens.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace sim {

/// Thrown inside the SQL units when a query is refused; ExecuteSql turns it into "?".
struct SqlRefused {};

/// Thrown for SQL that FileMaker supports but the simulator does not: "GROUP".
struct SqlUnknown {
  std::u16string part;
};

struct SqlToken {
  enum Kind { kEnd, kWord, kQuotedName, kText, kNumber, kSymbol };
  Kind kind = kEnd;
  std::u16string text;  ///< without the quotes around a name or a text
};

/// The tokens of `sql`; the last is kEnd. Throws SqlRefused for anything that is not a token. With `lenient` a text may
/// be enclosed in doubled single quotes: ''text''.
std::vector<SqlToken> SqlTokens(std::u16string_view sql, bool lenient);

}  // namespace sim
