// A URL as libcurl understands it.
#pragma once

#include <curl/curl.h>

#include <memory>
#include <string>

/// Safe on any thread.
class ParsedUrl {
 public:
  explicit ParsedUrl(const std::string& text);

  /// False when libcurl cannot parse the text; nothing else may be called then.
  bool IsValid() const { return isValid_; }
  /// Resolves `location`, which may be relative, as libcurl does for a redirect; false when it cannot be parsed.
  bool Follow(const std::string& location);

  /// In lower case.
  std::string Scheme() const { return Part(CURLUPART_SCHEME); }
  /// Scheme, host and port: "https://host:443".
  std::string Origin() const;

 private:
  std::string Part(CURLUPart part) const;

  std::unique_ptr<CURLU, decltype(&curl_url_cleanup)> url_;
  bool isValid_;
};
