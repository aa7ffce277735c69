#include "net/curl/ParsedUrl.h"

#include <algorithm>

#include "core/Ascii.h"

ParsedUrl::ParsedUrl(const std::string& text)
    : url_(curl_url(), curl_url_cleanup),
      isValid_(curl_url_set(url_.get(), CURLUPART_URL, text.c_str(), 0) == CURLUE_OK) {}

bool ParsedUrl::Follow(const std::string& location) {
  constexpr unsigned kAsInRedirects = CURLU_URLENCODE | CURLU_ALLOW_SPACE | CURLU_NON_SUPPORT_SCHEME;
  return curl_url_set(url_.get(), CURLUPART_URL, location.c_str(), kAsInRedirects) == CURLUE_OK;
}

std::string ParsedUrl::Part(CURLUPart part) const {
  char* text = nullptr;
  if (curl_url_get(url_.get(), part, &text, CURLU_DEFAULT_PORT) != CURLUE_OK) return "";
  const std::unique_ptr<char, decltype(&curl_free)> owned(text, curl_free);
  return text;
}

std::string ParsedUrl::Origin() const {
  std::string host = Part(CURLUPART_HOST);
  std::ranges::transform(host, host.begin(), AsciiLower);
  return Scheme() + "://" + host + ':' + Part(CURLUPART_PORT);
}
