// How a browser opens the console and stays signed in to it.
#pragma once

#include <string>

#include "console/Sessions.h"
#include "http/Http.h"

namespace service {

struct Context;

/// The service's address as the sender of `request` knows it.
std::string UrlFor(const Context& context, const Request& request);

/// The address that opens the console of the service at `url` with `token`. For a service that listens on all addresses
/// it is that of this machine.
std::string ConsoleAddress(const std::string& url, const std::string& token);

/// The value of Set-Cookie that gives the browser the secret of its session. Cookies are the same for all ports of a
/// host, so the port is in the cookie's name.
std::string SessionCookie(const Request& request, const std::string& secret);

/// True when the request has a cookie of this service, right or wrong.
bool HasSessionCookie(const Request& request);

/// True when the request has the cookie of one of `sessions`.
bool HasSession(const Sessions& sessions, const Request& request);

}  // namespace service
