// Who may talk to the service.
#pragma once

#include <string>
#include <string_view>

#include "Http.h"

namespace service {

class Access {
 public:
  /// With an empty `key` every key is accepted. That is for a service on loopback only, where every program of the
  /// machine is trusted, but not the web pages that its browser shows.
  explicit Access(std::string key) : key_(std::move(key)) {}

  bool IsOpen() const { return key_.empty(); }

  /// Throws HttpError 403 when a web page sent the request.
  void RefuseWebPages(const Request& request) const;

  /// True for the right key, and for any key without one. Takes the same time wherever a wrong key differs.
  bool IsKey(std::string_view key) const;

  /// Throws HttpError 401 unless `key` is right.
  void CheckKey(std::string_view key) const;

  /// The same for a key that comes as "Authorization: Bearer KEY".
  void CheckAuthorization(const Request& request) const;

  /// `text` without the key.
  std::string WithoutKey(std::string text) const;

 private:
  std::string key_;
};

/// True for keys that the plug-in can send: it puts them into addresses unescaped.
bool IsSendableKey(std::string_view key);

/// The host of a Host header: "[::1]:8765" and "localhost" without brackets and port.
std::string HostName(const std::string& hostHeader);

/// True for the names and addresses of the machine itself: localhost, 127.x.x.x, ::1. Without brackets or port.
bool IsLoopback(const std::string& host);

}  // namespace service
