#include "design/Names.h"

#include <unicode/bytestream.h>
#include <unicode/casemap.h>
#include <unicode/stringoptions.h>

#include <algorithm>

namespace solution {

std::string FoldCase(std::string_view name) {
  std::string folded(name);
  bool isAscii = true;
  for (char& c : folded) {
    if (static_cast<unsigned char>(c) >= 0x80) isAscii = false;
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
  }
  if (isAscii) return folded;
  std::string result;
  icu::StringByteSink<std::string> sink(&result, static_cast<std::int32_t>(name.size()));
  UErrorCode status = U_ZERO_ERROR;
  icu::CaseMap::utf8Fold(U_FOLD_CASE_DEFAULT, name, sink, nullptr, status);
  return U_SUCCESS(status) ? result : folded;
}

std::string_view WithoutExtension(std::string_view fileName) {
  constexpr std::string_view kExtension = ".fmp12";
  if (fileName.size() < kExtension.size()) return fileName;
  const std::string_view stem = fileName.substr(0, fileName.size() - kExtension.size());
  return FoldCase(fileName.substr(stem.size())) == kExtension ? stem : fileName;
}

}  // namespace solution
