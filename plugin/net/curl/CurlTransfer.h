// One transfer as a libcurl handle, from its request to its outcome.
#pragma once

#include <curl/curl.h>

#include <functional>
#include <memory>
#include <string>
#include <string_view>

#include "net/Transfer.h"
#include "net/curl/HeaderRules.h"

/// Belongs to the transfer thread from TransferThread::Start on. Not movable, because libcurl keeps its address.
class CurlTransfer {
 public:
  CurlTransfer(Network::Request request, std::function<void(Network::Outcome)> completion);
  CurlTransfer(const CurlTransfer&) = delete;
  CurlTransfer& operator=(const CurlTransfer&) = delete;

  /// Creates the handle, with the cookies of `shared`. Returns why that failed, or nullptr. Throws std::bad_alloc.
  const char* Prepare(CURLSH* shared);
  /// Valid once Prepare has succeeded.
  CURL* handle() const { return handle_.get(); }

  /// Calls the completion with the outcome of a transfer that ended with `code`.
  void Finish(CURLcode code);
  /// Calls the completion with the failure `reason`, readable for people.
  void Fail(const char* reason) noexcept;

 private:
  void SetOptions(CURLSH* shared);
  void SetRequest();

  // Each returns why the transfer must end, or "".
  using Receiver = std::string (CurlTransfer::*)(std::string_view bytes);
  std::string ReceiveHeader(std::string_view line);
  std::string ReceiveBody(std::string_view bytes);
  /// `receive` as a callback of libcurl. A result other than the number of bytes ends the transfer.
  template <Receiver receive>
  static std::size_t OnReceived(char* bytes, std::size_t size, std::size_t count, void* self) noexcept;

  template <class Value>
  void Set(CURLoption option, Value value) {
    const CURLcode code = curl_easy_setopt(handle_.get(), option, value);
    if (firstRefusal_ == CURLE_OK) firstRefusal_ = code;
  }

  const Network::Request request_;
  const std::function<void(Network::Outcome)> completion_;
  std::unique_ptr<curl_slist, decltype(&curl_slist_free_all)> headers_{nullptr, curl_slist_free_all};
  std::unique_ptr<CURL, decltype(&curl_easy_cleanup)> handle_{nullptr, curl_easy_cleanup};
  CURLcode firstRefusal_ = CURLE_OK;
  char description_[CURL_ERROR_SIZE] = "";
  HeaderRules headerRules_;
  std::string received_;
  std::string refusal_;  // why this class ended the transfer
};
