// The kinds of elements that a design consists of.
#pragma once

#include <string_view>

namespace solution {

enum class Kind {
  kFile,
  kTable,
  kField,
  kTableOccurrence,
  kRelationship,
  kLayout,
  kScript,
  kValueList,
  kCustomFunction,
  kCustomMenu,
  kCustomMenuSet,
  kTheme,
  kAccount,
  kPrivilegeSet,
  kExtendedPrivilege,
  kExternalDataSource,
  kBaseDirectory,
  kLayoutFolder,
  kScriptFolder,
  kCustomFunctionFolder,
};
inline constexpr std::size_t kKindCount = 20;

struct KindNames {
  std::string_view word;    ///< in JSON: "tableOccurrence"; the three kinds of folders share one
  std::string_view title;   ///< "table occurrence"
  std::string_view plural;  ///< "table occurrences"
};

const KindNames& NamesOf(Kind kind);
bool IsFolder(Kind kind);

}  // namespace solution
