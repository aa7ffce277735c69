// Base64, hexadecimal and percent encoding of texts, over their UTF-8 form.
#include <algorithm>
#include <string>
#include <string_view>

#include "calc/Errors.h"
#include "calc/Functions.h"
#include "calc/Unicode.h"

namespace calc {
namespace {

constexpr std::string_view kAlphabet = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
constexpr std::string_view kHexDigits = "0123456789ABCDEF";
constexpr size_t kMimeLine = 76;

std::string ToBase64(std::string_view bytes) {
  std::string result;
  result.reserve((bytes.size() + 2) / 3 * 4);
  for (size_t at = 0; at < bytes.size(); at += 3) {
    const size_t count = std::min<size_t>(3, bytes.size() - at);
    unsigned group = 0;
    for (size_t i = 0; i < 3; ++i) group = group << 8 | (i < count ? static_cast<unsigned char>(bytes[at + i]) : 0U);
    for (size_t i = 0; i < 4; ++i) result += i <= count ? kAlphabet[group >> (18 - 6 * i) & 63] : '=';
  }
  return result;
}

// Characters outside the alphabet are skipped; the first padding ends the data.
std::string FromBase64(std::string_view text) {
  std::string bytes;
  unsigned group = 0;
  int bits = 0;
  for (const char character : text.substr(0, text.find('='))) {
    const size_t digit = kAlphabet.find(character);
    if (digit == kAlphabet.npos) continue;
    group = (group << 6 | static_cast<unsigned>(digit)) & 0xFFFF;
    bits += 6;
    if (bits < 8) continue;
    bits -= 8;
    bytes += static_cast<char>(group >> bits & 0xFF);
  }
  return bytes;
}

// Every line ends with CR LF, the last one too.
std::string InLines(std::string_view text, size_t width) {
  std::string lines;
  for (size_t at = 0; at < text.size(); at += width) {
    lines += text.substr(at, width);
    lines += "\r\n";
  }
  return lines;
}

Value Base64Encode(Arguments arguments) {
  return Value::OfText(ToUtf16(InLines(ToBase64(ToUtf8(arguments[0].AsText())), kMimeLine)));
}

Value Base64EncodeRFC(Arguments arguments) {
  const std::string encoded = ToBase64(ToUtf8(arguments[1].AsText()));
  switch (arguments[0].AsNumber().ToInteger()) {
    case 1421:
      return Value::OfText(ToUtf16(InLines(encoded, 64)));
    case 2045:
      return Value::OfText(ToUtf16(InLines(encoded, kMimeLine)));
    case 3548:
    case 4648:
      return Value::OfText(ToUtf16(encoded));
    default:
      return Value::OfError(errors::kBadArgument);
  }
}

// Always text: a file name that could make a container is ignored.
Value Base64Decode(Arguments arguments) { return Value::OfText(ToUtf16(FromBase64(ToUtf8(arguments[0].AsText())))); }

bool StaysInUrl(char byte) {
  return (byte >= 'a' && byte <= 'z') || (byte >= 'A' && byte <= 'Z') || (byte >= '0' && byte <= '9') ||
         std::string_view("-_.~").find(byte) != std::string_view::npos;
}

void AppendHex(std::string& text, char byte) {
  text += kHexDigits[static_cast<unsigned char>(byte) >> 4];
  text += kHexDigits[static_cast<unsigned char>(byte) & 15];
}

Value GetAsURLEncoded(Arguments arguments) {
  std::string result;
  for (const char byte : ToUtf8(arguments[0].AsText())) {
    if (StaysInUrl(byte)) {
      result += byte;
    } else {
      result += '%';
      AppendHex(result, byte);
    }
  }
  return Value::OfText(ToUtf16(result));
}

Value HexEncode(Arguments arguments) {
  std::string result;
  for (const char byte : ToUtf8(arguments[0].AsText())) AppendHex(result, byte);
  return Value::OfText(ToUtf16(result));
}

constexpr Builtin kEncodingFunctions[] = {
    {u"Base64Decode", {1, 2}, Base64Decode},
    {u"Base64Encode", {1, 1}, Base64Encode},
    {u"Base64EncodeRFC", {2, 2}, Base64EncodeRFC},
    {u"GetAsURLEncoded", {1, 1}, GetAsURLEncoded},
    {u"HexEncode", {1, 1}, HexEncode},
};

}  // namespace

std::span<const Builtin> EncodingFunctions() { return kEncodingFunctions; }

}  // namespace calc
