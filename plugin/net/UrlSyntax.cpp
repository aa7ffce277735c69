#include "net/UrlSyntax.h"

#include <string_view>

#include "core/Ascii.h"

namespace {

constexpr std::string_view kAllowed =
    "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789-_.!~*'();/?:@&=+$,#[]%";

bool IsHexDigit(char c) { return (c >= '0' && c <= '9') || (AsciiLower(c) >= 'a' && AsciiLower(c) <= 'f'); }

}  // namespace

bool IsURLText(const std::string& text) {
  if (text.empty() || text.find_first_not_of(kAllowed) != text.npos) return false;
  for (std::size_t percent = text.find('%'); percent != text.npos; percent = text.find('%', percent + 1)) {
    if (percent + 2 >= text.size() || !IsHexDigit(text[percent + 1]) || !IsHexDigit(text[percent + 2])) return false;
  }
  return text.find('#') == text.rfind('#');
}

bool IsWebURL(const std::string& url) {
  for (const std::string_view scheme : {"http://", "https://"}) {
    if (!EqualIgnoringAsciiCase(std::string_view(url).substr(0, scheme.size()), scheme)) continue;
    return url.size() > scheme.size() && std::string_view("/?#:").find(url[scheme.size()]) == std::string_view::npos;
  }
  return false;
}
