// The operator interface of a running service, for the other subcommands.
#pragma once

#include <curl/curl.h>

#include <memory>
#include <nlohmann/json.hpp>
#include <stdexcept>
#include <string>

#include "Options.h"

namespace service {

/// The service refused the request, or its answer makes no sense.
class ServiceError : public std::runtime_error {
  using std::runtime_error::runtime_error;
};

/// No answer came.
class Unreachable : public ServiceError {
  using ServiceError::ServiceError;
};

/// Every call waits for the answer, and throws ServiceError or Unreachable when it does not succeed.
class Client {
 public:
  /// Takes the key that is given, otherwise, for a service on this machine, the one in the data folder.
  explicit Client(const Options& options);

  nlohmann::json Get(const std::string& path);
  nlohmann::json Post(const std::string& path, const nlohmann::json& message);

  /// The bytes of the answer, whatever they are.
  std::string GetBytes(const std::string& path);

 private:
  /// Sends `message` as JSON, or, without one, asks with GET.
  std::string Exchange(const std::string& path, const std::string* message);
  void AddHeader(const std::string& line);

  std::string url_;
  std::unique_ptr<CURL, decltype(&curl_easy_cleanup)> transfer_;
  std::unique_ptr<curl_slist, decltype(&curl_slist_free_all)> headers_;
};

/// Where the operator interface shows the command. Throws UsageError for what cannot be an id.
std::string CommandPath(const std::string& id);

}  // namespace service
