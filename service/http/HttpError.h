// A request that is refused. Handlers throw it; the server answers {"error":"message"}.
#pragma once

#include <stdexcept>
#include <string>

namespace service {

class HttpError : public std::runtime_error {
 public:
  HttpError(int status, const std::string& message) : std::runtime_error(message), status_(status) {}

  int status() const { return status_; }

 private:
  int status_;
};

}  // namespace service
