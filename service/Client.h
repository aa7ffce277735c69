// The operator interface of a running service, for the other subcommands.
#pragma once

#include <httplib.h>

#include <nlohmann/json.hpp>
#include <stdexcept>
#include <string>

#include "CommandLine.h"

namespace service {

/// The service refused or answered nonsense.
class ServiceError : public std::runtime_error {
  using std::runtime_error::runtime_error;
};

/// There was no answer.
class Unreachable : public ServiceError {
  using ServiceError::ServiceError;
};

/// Every call throws ServiceError or Unreachable when it does not succeed.
class Client {
 public:
  /// Takes the address and the key from --service, --key and the environment.
  explicit Client(const CommandLine& line);

  nlohmann::json Get(const std::string& path);
  nlohmann::json Post(const std::string& path, const nlohmann::json& message);

  /// The bytes of the answer, whatever they are.
  std::string GetBytes(const std::string& path);

 private:
  std::string Body(const httplib::Result& result);

  std::string url_;
  httplib::Client http_;
};

/// Where the operator interface shows the command. Throws UsageError for what cannot be an id.
std::string CommandPath(const std::string& id);

}  // namespace service
