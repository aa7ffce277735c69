// What the plug-in refuses because of an answer's headers: redirects that weaken a request, and repeated compression.
// libcurl by itself would follow every redirect and decode every layer.
#pragma once

#include <curl/curl.h>

#include <string>
#include <string_view>

/// Checks the header lines of one transfer, including those of its redirects. Transfer thread only.
class HeaderRules {
 public:
  /// Why the transfer on `handle` must end at this header line, readable for people; "" when it may go on.
  std::string Refusal(CURL* handle, std::string_view line);

 private:
  int codings_ = 0;  // in the header being read
};
