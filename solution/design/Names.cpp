#include "design/Names.h"

#include <unicode/uchar.h>
#include <unicode/ustring.h>

#include <cstdint>
#include <string>

namespace solution {
namespace {

template <typename Text>
std::int32_t Size(const Text& text) {
  return static_cast<std::int32_t>(text.size());
}

}  // namespace

// With ICU's C interface, which is part of macOS.
std::string FoldCase(std::string_view name) {
  std::string folded(name);
  bool isAscii = true;
  for (char& c : folded) {
    if (static_cast<unsigned char>(c) >= 0x80) isAscii = false;
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
  }
  if (isAscii) return folded;
  // No character takes more than three units when folded, and no unit more than three bytes.
  std::u16string text(name.size(), u'\0'), result(3 * name.size(), u'\0');
  std::int32_t length = 0;
  UErrorCode status = U_ZERO_ERROR;
  u_strFromUTF8(text.data(), Size(text), &length, name.data(), Size(name), &status);
  length = u_strFoldCase(result.data(), Size(result), text.data(), length, U_FOLD_CASE_DEFAULT, &status);
  std::string bytes(3 * static_cast<std::size_t>(length), '\0');
  u_strToUTF8(bytes.data(), Size(bytes), &length, result.data(), length, &status);
  if (U_FAILURE(status) != 0) return folded;
  bytes.resize(static_cast<std::size_t>(length));
  return bytes;
}

std::string_view WithoutExtension(std::string_view fileName) {
  constexpr std::string_view kExtension = ".fmp12";
  if (fileName.size() < kExtension.size()) return fileName;
  const std::string_view stem = fileName.substr(0, fileName.size() - kExtension.size());
  return FoldCase(fileName.substr(stem.size())) == kExtension ? stem : fileName;
}

}  // namespace solution
