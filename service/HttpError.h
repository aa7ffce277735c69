// A request that cannot be answered as asked. Thrown by handlers; the server turns it into the answer
// {"error":"message"}.
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
