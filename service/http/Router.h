// Finds the function that answers a request, and checks whether the request is allowed.
#pragma once

#include <string>
#include <string_view>

#include "http/Http.h"

namespace service {

struct Context;

/// Where a request carries the account key. For `kHeader`, the console's page may have a session instead. `kNone` and
/// `kConsole` need no key; `kConsole` is open to the console's page, too.
enum class KeyPlace { kNone, kPath, kQuery, kHeader, kBody, kConsole };

struct Route {
  const char* method;
  const char* pattern;  ///< "*" matches any segment; at the end, the rest of the path
  KeyPlace key;
  bool takesFile;  ///< its body may be as large as the service permits
  bool takesForm;  ///< its body must be a multipart form, otherwise must not be one
  Response (*answer)(Context&, const Request&);
};

/// The route of a request. Stores the segments that "*" matched in `request`. Throws HttpError 404 or 405.
const Route& FindRoute(Request& request);

/// Checks what can be checked before the body is read: the method, web pages, the key unless it is in the body, the
/// body's length and type. Returns the route. Throws HttpError.
const Route& Admit(Context& context, Request& request);

/// True when `body`, the first bytes of a body, contains the right key, or no key is needed.
bool ShowsKey(const Context& context, std::string_view body);

}  // namespace service
