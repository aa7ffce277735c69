// What the header lines of an answer rule out. libcurl by itself follows every redirect and undoes every coding.
#pragma once

#include <curl/curl.h>

#include <string>
#include <string_view>

/// Reads the header lines of one transfer, those of its redirects included. Lives on the transfer thread.
class HeaderRules {
 public:
  /// Why the transfer on `handle` must end at this header line, in words for people; "" when it may go on.
  std::string Refusal(CURL* handle, std::string_view line);

 private:
  int codings_ = 0;  // of the answer whose header is being read
};
