#include "net/curl/CurlTransfer.h"

#include <exception>
#include <new>
#include <utility>

#include "net/UrlSyntax.h"

namespace {

constexpr long kMostRedirects = 20;
constexpr long kUploadBufferBytes = 2 << 20;  // the most that libcurl accepts; large files need few steps

}  // namespace

CurlTransfer::CurlTransfer(Network::Request request, std::function<void(Network::Outcome)> completion)
    : request_(std::move(request)), completion_(std::move(completion)) {}

const char* CurlTransfer::Prepare(CURLSH* shared) {
  if (!IsWebURL(request_.url)) return "unsupported URL";  // libcurl would guess a scheme
  handle_.reset(curl_easy_init());
  if (!handle_) return curl_easy_strerror(CURLE_OUT_OF_MEMORY);
  SetOptions(shared);
  SetRequest();
  return firstRefusal_ == CURLE_OK ? nullptr : curl_easy_strerror(firstRefusal_);
}

void CurlTransfer::SetOptions(CURLSH* shared) {
  Set(CURLOPT_ERRORBUFFER, description_);
  Set(CURLOPT_NOSIGNAL, 1L);
  Set(CURLOPT_TIMEOUT_MS, static_cast<long>(Network::TransferTimeLimit().count()));
#if CURL_AT_LEAST_VERSION(7, 87, 0)
  Set(CURLOPT_QUICK_EXIT, 1L);  // a name look-up that hangs must not delay the end of the process
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
  Set(CURLOPT_ACCEPT_ENCODING, "");  // whatever this libcurl can decode
  Set(CURLOPT_COOKIEFILE, "");       // enables cookies, initially none
  Set(CURLOPT_SHARE, shared);

  Set(CURLOPT_HEADERFUNCTION, &CurlTransfer::OnReceived<&CurlTransfer::ReceiveHeader>);
  Set(CURLOPT_HEADERDATA, this);
  Set(CURLOPT_WRITEFUNCTION, &CurlTransfer::OnReceived<&CurlTransfer::ReceiveBody>);
  Set(CURLOPT_WRITEDATA, this);
}

void CurlTransfer::SetRequest() {
  const auto addHeader = [this](const std::string& line) {
    curl_slist* const longer = curl_slist_append(headers_.get(), line.c_str());
    if (longer == nullptr) throw std::bad_alloc();
    static_cast<void>(headers_.release());
    headers_.reset(longer);
  };
  for (const auto& [name, value] : request_.headers) addHeader(name + ": " + value);
  if (request_.method == std::string_view("POST")) {
    addHeader("Expect:");  // many servers never send the 100 that libcurl would wait for
    Set(CURLOPT_POST, 1L);
    Set(CURLOPT_POSTFIELDSIZE_LARGE, static_cast<curl_off_t>(request_.body.size()));
    Set(CURLOPT_POSTFIELDS, request_.body.data());
    Set(CURLOPT_UPLOAD_BUFFERSIZE, kUploadBufferBytes);
  }
  Set(CURLOPT_HTTPHEADER, headers_.get());
}

std::string CurlTransfer::ReceiveHeader(std::string_view line) { return headerRules_.Refusal(handle(), line); }

std::string CurlTransfer::ReceiveBody(std::string_view bytes) {
  if (bytes.size() > request_.answerLimit - received_.size()) {
    return "The answer is too large: more than " + std::to_string(request_.answerLimit >> 20) + " MB.";
  }
  received_ += bytes;
  return "";
}

template <CurlTransfer::Receiver receive>
std::size_t CurlTransfer::OnReceived(char* bytes, std::size_t size, std::size_t count, void* self) noexcept {
  auto& transfer = *static_cast<CurlTransfer*>(self);
  try {
    transfer.refusal_ = (transfer.*receive)({bytes, size * count});
  } catch (const std::exception&) {
    transfer.refusal_ = Network::kOutOfMemory;
  }
  return transfer.refusal_.empty() ? size * count : 0;
}

void CurlTransfer::Finish(CURLcode code) {
  if (!refusal_.empty()) return Fail(refusal_.c_str());
  if (code != CURLE_OK) return Fail(description_[0] != '\0' ? description_ : curl_easy_strerror(code));
  long status = 0;
  curl_easy_getinfo(handle(), CURLINFO_RESPONSE_CODE, &status);
  completion_({.hasBody = true, .body = std::move(received_), .failure = {}, .status = status});
}

void CurlTransfer::Fail(const char* reason) noexcept { completion_(Network::Failure(reason)); }
