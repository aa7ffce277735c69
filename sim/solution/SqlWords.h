// The words and signs of FileMaker's SQL.
#pragma once

#include <string_view>

namespace sim {

/// Cannot be a name unless it is quoted.
bool IsReservedSqlWord(std::u16string_view word);

/// A word or sign of FileMaker's SQL that the simulator does not know.
bool IsUnknownSqlPart(std::u16string_view text);

/// The name of a function of FileMaker's SQL. The simulator supports only COUNT ( * ).
bool IsSqlFunction(std::u16string_view word);

}  // namespace sim
