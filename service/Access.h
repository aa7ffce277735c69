// Who may talk to the service.
#pragma once

#include <string>
#include <string_view>

#include "Http.h"

namespace service {

/// What sent a request, as far as the headers show that browsers add to it. One that has no such headers may also come
/// from a browser's address bar, or be the GET of an old browser.
enum class Sender { kProgram, kOwnPage, kOtherPage };

class Access {
 public:
  /// With an empty `key` every key is accepted. That is for a service on loopback only, where every program of the
  /// machine is trusted, but not the web pages that its browser shows. `host` is the name that the service listens on.
  explicit Access(std::string key, std::string host = "") : key_(std::move(key)), host_(std::move(host)) {}

  bool IsOpen() const { return key_.empty(); }

  Sender SenderOf(const Request& request) const;

  /// Throws HttpError 403 when a web page sent the request.
  void RefuseWebPages(const Request& request) const;

  /// Throws HttpError 403 when another web page than the service's own sent the request. What a person follows to this
  /// service in a window of its own is accepted.
  void RefuseOtherPages(const Request& request) const;

  /// True for a Host header that no other site can have resolved to this machine: localhost, an IP address, or the name
  /// that the service listens on.
  bool IsOwnHost(const std::string& hostHeader) const;

  /// True for the right key, and for any key without one. Takes the same time wherever a wrong key differs.
  bool IsKey(std::string_view key) const;

  /// Throws HttpError 401 unless `key` is right.
  void CheckKey(std::string_view key) const;

  /// The same for a key that comes as "Authorization: Bearer KEY".
  void CheckAuthorization(const Request& request) const;

  /// `text` without the key.
  std::string WithoutKey(std::string text) const;

  /// The calculation that signs FileMaker in to the service at `url`. Has the key in it.
  std::string SignInLine(const std::string& url) const;

 private:
  std::string key_;
  std::string host_;
};

/// True for keys that the plug-in can send: it puts them into addresses unescaped.
bool IsSendableKey(std::string_view key);

/// The host of a Host header: "[::1]:8765" and "localhost" without brackets and port.
std::string HostName(const std::string& hostHeader);

/// Its port; 80 without one.
std::string HostPort(const std::string& hostHeader);

/// True for the names and addresses of the machine itself: localhost, 127.x.x.x, ::1. Without brackets or port.
bool IsLoopback(const std::string& host);

}  // namespace service
