// Who may talk to the service.
#pragma once

#include <httplib.h>

#include <string>
#include <string_view>

namespace service {

class Access {
 public:
  /// With an empty `key` every key is accepted. That is for a service on loopback only, where programs of this machine
  /// are trusted, but not the web pages that its browser shows.
  explicit Access(std::string key) : key_(std::move(key)) {}

  /// Throws HttpError 403 when a web page sent the request.
  void RefuseWebPages(const httplib::Request& request) const;

  /// Throws HttpError 401 unless `key` is right. Takes the same time wherever a wrong key differs.
  void CheckKey(std::string_view key) const;

  /// The same for a key that comes as "Authorization: Bearer KEY".
  void CheckAuthorization(const httplib::Request& request) const;

 private:
  std::string key_;
};

/// True for keys that the plug-in can send: it puts them into addresses as they stand.
bool IsSendableKey(std::string_view key);

/// True for the names and addresses of the machine itself: localhost, 127.x.x.x, ::1. Without brackets or port.
bool IsLoopback(const std::string& host);

}  // namespace service
