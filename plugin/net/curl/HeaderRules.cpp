#include "net/curl/HeaderRules.h"

#include <algorithm>
#include <optional>

#include "core/Ascii.h"
#include "net/curl/ParsedUrl.h"

namespace {

constexpr std::string_view kSpaces = " \t\r\n";
constexpr int kMostCodings = 1;  // a few kilobytes compressed twice can expand to gigabytes

std::string_view Trimmed(std::string_view text) {
  const std::size_t first = text.find_first_not_of(kSpaces);
  if (first == text.npos) return {};
  return text.substr(first, text.find_last_not_of(kSpaces) + 1 - first);
}

/// The value of a header line with this name; nothing for other lines.
std::optional<std::string_view> ValueOf(std::string_view name, std::string_view line) {
  const std::size_t colon = line.find(':');
  if (colon == line.npos || !EqualIgnoringAsciiCase(Trimmed(line.substr(0, colon)), name)) return std::nullopt;
  return Trimmed(line.substr(colon + 1));
}

/// How many entries in a list of codings change the size of the data.
int CountCodings(std::string_view list) {
  int count = 0;
  for (std::size_t start = 0; start < list.size();) {
    const std::size_t comma = std::min(list.find(',', start), list.size());
    const std::string_view coding = Trimmed(list.substr(start, comma - start));
    const bool keepsSize =
        coding.empty() || EqualIgnoringAsciiCase(coding, "identity") || EqualIgnoringAsciiCase(coding, "chunked");
    count += keepsSize ? 0 : 1;
    start = comma + 1;
  }
  return count;
}

/// Whether libcurl would send the request's body again to the target of a redirect with this status.
bool RepeatsBody(CURL* handle, long status) {
  const char* method = "";
  curl_easy_getinfo(handle, CURLINFO_EFFECTIVE_METHOD, &method);
  return method == std::string_view("POST") && status != 301 && status != 302 && status != 303;
}

std::string RedirectRefusal(CURL* handle, std::string_view location) {
  long status = 0;
  const char* address = nullptr;
  curl_easy_getinfo(handle, CURLINFO_RESPONSE_CODE, &status);
  curl_easy_getinfo(handle, CURLINFO_EFFECTIVE_URL, &address);
  if (status < 300 || status > 399 || address == nullptr) return "";
  const ParsedUrl from(address);
  ParsedUrl to(address);
  if (!from.IsValid() || !to.Follow(std::string(location))) return "Refused a redirect to an invalid URL.";
  if (from.Scheme() == "https" && to.Scheme() != "https") {
    return "Refused a redirect from https to " + to.Origin() + '.';
  }
  if (RepeatsBody(handle, status) && from.Origin() != to.Origin()) {
    return "Refused a redirect that would send the data meant for " + from.Origin() + " to " + to.Origin() + '.';
  }
  return "";
}

}  // namespace

std::string HeaderRules::Refusal(CURL* handle, std::string_view line) {
  if (line.starts_with("HTTP/")) codings_ = 0;
  for (const char* name : {"content-encoding", "transfer-encoding"}) {
    if (const auto list = ValueOf(name, line)) codings_ += CountCodings(*list);
  }
  if (codings_ > kMostCodings) return "The answer is compressed more than once.";
  const auto location = ValueOf("location", line);
  return location ? RedirectRefusal(handle, *location) : "";
}
