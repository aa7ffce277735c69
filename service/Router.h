// From a request to the function that answers it.
#pragma once

#include <string>
#include <string_view>

#include "Http.h"

namespace service {

struct Context;

/// Where a request carries the account key. Instead of one in a header, the console's page may have a session. Without
/// key, and open to the console's page too, are the requests of `kConsole`.
enum class KeyPlace { kNone, kPath, kQuery, kHeader, kBody, kConsole };

struct Route {
  const char* method;
  const char* pattern;  ///< "*" leaves a segment open; as the last one, the rest of the path
  KeyPlace key;
  bool takesFile;  ///< its body may be as large as the service permits
  bool takesForm;  ///< its body must be a multipart form, otherwise must not be one
  Response (*answer)(Context&, const Request&);
};

/// The route of a request, whose open segments are stored in `request`. Throws HttpError 404 or 405.
const Route& FindRoute(Request& request);

/// Checks what can be checked before the body is read: the method, web pages, the key where it is not in the body, the
/// length and the type of the body. Throws HttpError.
const Route& Admit(Context& context, Request& request);

/// True when the first bytes of a body have shown the right key, or no key is needed.
bool ShowsKey(const Context& context, std::string_view body);

}  // namespace service
