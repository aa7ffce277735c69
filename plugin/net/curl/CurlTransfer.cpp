#include "net/curl/CurlTransfer.h"

#include <exception>
#include <new>
#include <utility>

#include "net/UrlSyntax.h"

namespace {

constexpr long kMostRedirects = 20;
constexpr long kUploadBufferBytes = 2 << 20;  // the most that libcurl takes; large files leave in few steps

}  // namespace

CurlTransfer::CurlTransfer(Network::Request request, std::function<void(Network::Outcome)> completion)
    : request_(std::move(request)), completion_(std::move(completion)) {}

const char* CurlTransfer::Prepare(CURLSH* shared) {
  if (!IsWebURL(request_.url)) return "unsupported URL";  // libcurl would guess a scheme
  handle_.reset(curl_easy_init());
  if (!handle_) return curl_easy_strerror(CURLE_OUT_OF_MEMORY);
  SetOptions(shared);
  return firstRefusal_ == CURLE_OK ? nullptr : curl_easy_strerror(firstRefusal_);
}

void CurlTransfer::SetOptions(CURLSH* shared) {
  Set(CURLOPT_ERRORBUFFER, description_);
  Set(CURLOPT_NOSIGNAL, 1L);
  Set(CURLOPT_TIMEOUT_MS, static_cast<long>(Network::TransferTimeLimit().count()));
#if CURL_AT_LEAST_VERSION(7, 87, 0)
  Set(CURLOPT_QUICK_EXIT, 1L);  // a name look-up that hangs must not hold up the end of the process
#endif

  Set(CURLOPT_URL, request_.url.c_str());
  Set(CURLOPT_PATH_AS_IS, 1L);
#if CURL_AT_LEAST_VERSION(7, 85, 0)
  Set(CURLOPT_PROTOCOLS_STR, "http,https");
  Set(CURLOPT_REDIR_PROTOCOLS_STR, "http,https");
#else
  Set(CURLOPT_PROTOCOLS, static_cast<long>(CURLPROTO_HTTP | CURLPROTO_HTTPS));
  Set(CURLOPT_REDIR_PROTOCOLS, static_cast<long>(CURLPROTO_HTTP | CURLPROTO_HTTPS));
#endif
  Set(CURLOPT_FOLLOWLOCATION, 1L);
  Set(CURLOPT_MAXREDIRS, kMostRedirects);
  Set(CURLOPT_ACCEPT_ENCODING, "");  // all that this libcurl can decode
  Set(CURLOPT_COOKIEFILE, "");       // keeps cookies, starting with none
  Set(CURLOPT_SHARE, shared);

  const auto addHeader = [this](const std::string& line) {
    headers_.reset(curl_slist_append(headers_.release(), line.c_str()));
  };
  for (const auto& [name, value] : request_.headers) addHeader(name + ": " + value);
  if (request_.method == std::string_view("POST")) {
    addHeader("Expect:");  // not to wait for a leave that many servers never give
    Set(CURLOPT_POST, 1L);
    Set(CURLOPT_POSTFIELDSIZE_LARGE, static_cast<curl_off_t>(request_.body.size()));
    Set(CURLOPT_POSTFIELDS, request_.body.data());
    Set(CURLOPT_UPLOAD_BUFFERSIZE, kUploadBufferBytes);
  }
  Set(CURLOPT_HTTPHEADER, headers_.get());
  Set(CURLOPT_WRITEFUNCTION, &CurlTransfer::Receive);
  Set(CURLOPT_WRITEDATA, this);
}

std::size_t CurlTransfer::Receive(char* bytes, std::size_t size, std::size_t count, void* self) noexcept {
  try {
    static_cast<CurlTransfer*>(self)->received_.append(bytes, size * count);
  } catch (const std::exception&) {  // no memory for it: ends the transfer
    return 0;
  }
  return size * count;
}

void CurlTransfer::Finish(CURLcode code) {
  if (code != CURLE_OK) return Fail(description_[0] != '\0' ? description_ : curl_easy_strerror(code));
  long status = 0;
  curl_easy_getinfo(handle(), CURLINFO_RESPONSE_CODE, &status);
  completion_({.hasBody = true, .body = std::move(received_), .failure = {}, .status = status});
}

void CurlTransfer::Fail(const char* reason) noexcept {
  std::string failure;
  try {
    failure = reason;
  } catch (const std::bad_alloc&) {
    failure = "out of memory";  // short enough to need none
  }
  completion_({.hasBody = false, .body = {}, .failure = std::move(failure), .status = 0});
}
