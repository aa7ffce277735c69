// Who may use the service.
#pragma once

#include <string>
#include <string_view>

#include "http/Http.h"

namespace service {

/// What sent a request, judged by the headers that browsers add. A request without them comes from a program, from a
/// browser's address bar, or is the GET of an old browser.
enum class Sender { kProgram, kOwnPage, kOtherPage };

class Access {
 public:
  /// With an empty `key` every key is accepted. That is for a service that listens on loopback only and trusts every
  /// program of the machine, but not the web pages in its browser. `host` is the name that the service listens on.
  explicit Access(std::string key, std::string host = "") : key_(std::move(key)), host_(std::move(host)) {}

  bool IsOpen() const { return key_.empty(); }

  Sender SenderOf(const Request& request) const;

  /// Throws HttpError 403 when a web page sent the request.
  void RefuseWebPages(const Request& request) const;

  /// Throws HttpError 403 when a web page other than the service's own sent the request. A link that a person follows
  /// to the service is accepted if it fills a window.
  void RefuseOtherPages(const Request& request) const;

  /// True for a Host header with a name that no other site can make resolve to this machine: localhost, an IP address,
  /// or the name that the service listens on.
  bool IsOwnHost(const std::string& hostHeader) const;

  /// True for the right key, and for any key if the service needs none. Takes the same time wherever a wrong key
  /// differs.
  bool IsKey(std::string_view key) const;

  /// Throws HttpError 401 unless `key` is right.
  void CheckKey(std::string_view key) const;

  /// Checks the key in the header "Authorization: Bearer KEY" in the same way.
  void CheckAuthorization(const Request& request) const;

  /// `text` with "*" in place of the key.
  std::string WithoutKey(std::string text) const;

  /// The calculation that signs FileMaker in to the service at `url`. Contains the key.
  std::string SignInLine(const std::string& url) const;

 private:
  std::string key_;
  std::string host_;
};

/// True for keys that the plug-in can send: it puts them into addresses unescaped.
bool IsSendableKey(std::string_view key);

/// The host in a Host header such as "[::1]:8765", without brackets and port.
std::string HostName(const std::string& hostHeader);

/// The port in a Host header; 80 if it has none.
std::string HostPort(const std::string& hostHeader);

/// True for the names and addresses of the machine itself: localhost, 127.x.x.x, ::1. Without brackets or port.
bool IsLoopback(const std::string& host);

}  // namespace service
