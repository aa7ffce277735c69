// varnix-service as a separate process, and requests to it.
#pragma once

#include <httplib.h>

#include <string>
#include <vector>

#include "support/Process.h"

class RunningService {
 public:
  /// Starts `varnix-service serve` with its data in `folder`, and waits until it listens.
  explicit RunningService(const std::string& folder, const std::vector<std::string>& options = {"--no-key"},
                          const std::string& port = "0");
  ~RunningService();

  /// Ends the process and returns its exit status, or 128 and the signal that ended it.
  int End(int signal) { return process_.End(signal); }

  const std::string& url() const { return url_; }
  std::string port() const { return url_.substr(url_.rfind(':') + 1); }
  /// The lines that it prints after the address.
  const std::string& signInLine() const { return signInLine_; }
  const std::string& consoleLine() const { return consoleLine_; }

  /// The answer to a request, with the status -1 when there is none.
  httplib::Response Exchange(const std::string& method, const std::string& path, const httplib::Headers& headers = {},
                             const std::string& body = "") const;
  httplib::Response Get(const std::string& path, const httplib::Headers& headers = {}) const;
  httplib::Response Post(const std::string& path, const std::string& body,
                         const std::string& contentType = "application/json") const;

  /// Queues a command given as the members of its JSON object and returns its id.
  std::string Queue(const std::string& members) const;

  /// One poll as the plug-in makes it: the answer's body.
  std::string Poll() const;

  /// Completes a command as the plug-in does.
  httplib::Response Complete(const std::string& id, const std::string& members = R"("status":"completed")") const;

  /// The value of the member `key` of a command, as the plug-in's own JSON reader finds it.
  std::string Member(const std::string& id, const std::string& key) const;

 private:
  ChildProcess process_;
  std::string url_;
  std::string signInLine_;
  std::string consoleLine_;
};
