#include "net/Network.h"

#include <cstdio>
#include <memory>
#include <mutex>
#include <optional>
#include <utility>

#include "host/FileIO.h"
#include "net/Random.h"
#include "net/Semaphore.h"
#include "net/Transfer.h"

namespace Network {
namespace {

// Where a transfer leaves its outcome. Outlives a caller that has given up waiting.
struct Delivery {
  Semaphore arrived;
  std::mutex mutex;  // guards the outcome
  std::optional<Outcome> outcome;
};

bool CheckURL(const std::string& url, std::string& error) {
  if (IsURL(url)) return true;
  error = "ERROR: Invalid URL: " + url;
  return false;
}

// Reads the file straight into its place in `body`.
bool ReadAppending(const std::string& path, std::string& body, std::string& error) {
  std::string detail;
  if (FileIO::ReadAppending(path, body, detail)) return true;
  error = "ERROR: Could not read file: " + path;
  return false;
}

std::optional<Outcome> Transfer(Request request) {
  const auto delivery = std::make_shared<Delivery>();
  StartTransfer(std::move(request), [delivery](Outcome outcome) {
    {
      const std::lock_guard lock(delivery->mutex);
      delivery->outcome = std::move(outcome);
    }
    delivery->arrived.Signal();
  });
  if (!delivery->arrived.WaitFor(WaitTimeLimit())) return std::nullopt;
  const std::lock_guard lock(delivery->mutex);
  return std::move(delivery->outcome);
}

bool SendRequest(Request request, std::string& response, std::string& error) {
  std::optional<Outcome> outcome = Transfer(std::move(request));
  if (!outcome) {
    error = "ERROR: Request timed out.";
    return false;
  }
  if (!outcome->failure.empty()) {
    error = "ERROR: " + outcome->failure;
    return false;
  }
  if (outcome->status >= 400) error = "ERROR: HTTP " + std::to_string(outcome->status) + " — " + outcome->body;
  if (outcome->hasBody) response = std::move(outcome->body);
  return outcome->status < 400;
}

bool PostBody(const std::string& url, std::string contentType, std::string body, std::size_t answerLimit,
              std::string& response, std::string& error) {
  return SendRequest({.url = url,
                      .method = "POST",
                      .headers = {{"Content-Type", std::move(contentType)}},
                      .body = std::move(body),
                      .answerLimit = answerLimit},
                     response, error);
}

std::string NewBoundary() {
  char boundary[sizeof "VarnixBoundary" + 8];
  std::snprintf(boundary, sizeof boundary, "VarnixBoundary%08X", RandomNumber());
  return boundary;
}

std::string Field(const std::string& boundary, const char* name, const std::string& value) {
  return "--" + boundary + "\r\nContent-Disposition: form-data; name=\"" + name + "\"\r\n\r\n" + value + "\r\n";
}

}  // namespace

bool Post(const std::string& url, std::string body, std::string& response, std::string& error,
          std::size_t answerLimit) {
  if (!CheckURL(url, error)) return false;
  return SendRequest({.url = url,
                      .method = "POST",
                      .headers = {{"Content-Type", "application/json"}, {"Accept", "application/json"}},
                      .body = std::move(body),
                      .answerLimit = answerLimit},
                     response, error);
}

bool Get(const std::string& url, std::string& response, std::string& error, std::size_t answerLimit) {
  if (!CheckURL(url, error)) return false;
  return SendRequest({.url = url,
                      .method = "GET",
                      .headers = {{"Accept", "application/json"}},
                      .body = {},
                      .answerLimit = answerLimit},
                     response, error);
}

bool PostFile(const std::string& url, const std::string& filePath, std::string& response, std::string& error) {
  std::string body;
  if (!CheckURL(url, error) || !ReadAppending(filePath, body, error)) return false;
  return PostBody(url, "application/octet-stream", std::move(body), kShortAnswer, response, error);
}

bool PostMultipart(const std::string& url, const std::string& accountKey, const std::string& filename,
                   const std::string& filePath, std::string& response, std::string& error) {
  if (!CheckURL(url, error)) return false;
  const std::string boundary = NewBoundary();
  std::string body = Field(boundary, "licenseKey", accountKey) + Field(boundary, "filename", filename);
  body += "--" + boundary + "\r\nContent-Disposition: form-data; name=\"file\"; filename=\"" + filename +
          "\"\r\nContent-Type: application/xml\r\n\r\n";
  if (!ReadAppending(filePath, body, error)) return false;
  body += "\r\n--" + boundary + "--\r\n";
  return PostBody(url, "multipart/form-data; boundary=" + boundary, std::move(body), kLongAnswer, response, error);
}

}  // namespace Network
