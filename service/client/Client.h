// The operator interface of a running service, for the other subcommands.
#pragma once

#include <curl/curl.h>

#include <memory>
#include <nlohmann/json.hpp>
#include <stdexcept>
#include <string>

#include "Options.h"

namespace service {

/// The service refused the request, or its answer is not valid.
class ServiceError : public std::runtime_error {
  using std::runtime_error::runtime_error;
};

/// No answer came.
class Unreachable : public ServiceError {
  using ServiceError::ServiceError;
};

/// Every call waits for the answer, and throws ServiceError or Unreachable when it does not succeed. One thread at a
/// time.
class Client {
 public:
  /// Uses the given key; without one, for a service on this machine, the key in the data folder.
  explicit Client(const Options& options);

  /// The service's address, without a slash at its end.
  const std::string& url() const { return url_; }

  nlohmann::json Get(const std::string& path);
  nlohmann::json Post(const std::string& path, const nlohmann::json& message);

  /// The bytes of the answer, verbatim.
  std::string GetBytes(const std::string& path);

 private:
  /// Posts `message`; sends a GET request if it is null.
  std::string Exchange(const std::string& path, const std::string* message);
  void AddHeader(const std::string& line);

  std::string url_;
  std::unique_ptr<CURL, decltype(&curl_easy_cleanup)> transfer_;
  std::unique_ptr<curl_slist, decltype(&curl_slist_free_all)> headers_;
};

/// The path of the command in the operator interface. Throws UsageError for text that cannot be an id.
std::string CommandPath(const std::string& id);

}  // namespace service
