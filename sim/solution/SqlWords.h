// The words and signs of FileMaker's SQL.
#pragma once

#include <string_view>

namespace sim {

/// True for a word that can be a name only if it is quoted.
bool IsReservedSqlWord(std::u16string_view word);

/// True for a word or sign of FileMaker's SQL that the simulator does not support.
bool IsUnknownSqlPart(std::u16string_view text);

/// True for the name of a function of FileMaker's SQL. The simulator supports only COUNT ( * ).
bool IsSqlFunction(std::u16string_view word);

}  // namespace sim
