#include "wrapper/Encodings.h"

#include <unicode/ucnv.h>
#include <unicode/utf16.h>

#include <algorithm>
#include <iterator>
#include <memory>
#include <stdexcept>

#include "calc/Unicode.h"
#include "wrapper/Objects.h"

namespace wrapper {
namespace {

constexpr std::size_t kMostBytesPerUnit = 4;

// ICU's names by encoding number. FileMaker's native text is UTF-8.
constexpr const char* kConverters[] = {"UTF-8",
                                       "UTF-8",
                                       "ibm-437",
                                       "windows-1252",
                                       "macintosh",
                                       "ISO-8859-1",
                                       "Shift_JIS",
                                       "windows-932",
                                       "EUC-KR",
                                       "windows-949",
                                       nullptr,
                                       "Big5",
                                       "windows-950",
                                       "GB2312",
                                       "windows-936",
                                       "x-mac-cyrillic",
                                       "windows-1251",
                                       "ISO-8859-5",
                                       "x-mac-centraleurroman",
                                       "windows-1250",
                                       "ISO-8859-2",
                                       "x-mac-turkish",
                                       "windows-1254",
                                       "ISO-8859-3",
                                       "ISO-8859-9",
                                       "windows-1257",
                                       "ISO-8859-4",
                                       nullptr,
                                       "windows-1256",
                                       "ISO-8859-6",
                                       "x-mac-greek",
                                       "windows-1253",
                                       "ISO-8859-7",
                                       nullptr,
                                       "windows-1255",
                                       "ISO-8859-8",
                                       "ISO-8859-15"};
static_assert(std::size(kConverters) == fmx::Text::kEncoding_ISO_8859_15 + 1);

bool IsUtf8(std::int32_t encoding) {
  return encoding == fmx::Text::kEncoding_Native || encoding == fmx::Text::kEncoding_UTF8;
}

using Converter = std::unique_ptr<UConverter, void (*)(UConverter*)>;

Converter OpenConverter(std::int32_t encoding) {
  const bool known = encoding >= 0 && static_cast<std::size_t>(encoding) < std::size(kConverters);
  const char* name = known ? kConverters[encoding] : nullptr;
  UErrorCode status = U_ZERO_ERROR;
  Converter converter(name == nullptr ? nullptr : ucnv_open(name, &status), ucnv_close);
  if (converter == nullptr || U_FAILURE(status)) throw std::invalid_argument("unknown encoding");
  return converter;
}

}  // namespace

std::u16string Decode(std::string_view bytes, std::int32_t encoding) {
  if (IsUtf8(encoding)) return calc::ToUtf16(bytes);
  const auto converter = OpenConverter(encoding);
  std::u16string text(2 * bytes.size(), u'\0');
  UErrorCode status = U_ZERO_ERROR;
  const auto size = ucnv_toUChars(converter.get(), text.data(), static_cast<std::int32_t>(text.size()), bytes.data(),
                                  static_cast<std::int32_t>(bytes.size()), &status);
  text.resize(static_cast<std::size_t>(size));
  return text;
}

std::string Encode(std::u16string_view text, std::int32_t encoding) {
  if (IsUtf8(encoding)) return calc::ToUtf8(text);
  const auto converter = OpenConverter(encoding);
  std::string bytes(kMostBytesPerUnit * text.size(), '\0');
  UErrorCode status = U_ZERO_ERROR;
  const auto size = ucnv_fromUChars(converter.get(), bytes.data(), static_cast<std::int32_t>(bytes.size()), text.data(),
                                    static_cast<std::int32_t>(text.size()), &status);
  bytes.resize(static_cast<std::size_t>(size));
  return bytes;
}

std::string EncodeWithin(std::u16string_view text, std::int32_t encoding, std::size_t capacity) {
  std::string bytes = Encode(text, encoding);
  while (bytes.size() > capacity) {
    const std::size_t surplus = (bytes.size() - capacity) / kMostBytesPerUnit;
    text.remove_suffix(std::max<std::size_t>(surplus, 1));
    if (!text.empty() && U16_IS_LEAD(text.back())) text.remove_suffix(1);
    bytes = Encode(text, encoding);
  }
  return bytes;
}

}  // namespace wrapper
