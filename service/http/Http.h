// Requests and answers, as the handlers see them.
#pragma once

#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace service {

struct Request {
  std::string method;
  std::string path;                            ///< as sent, without the query
  std::map<std::string, std::string> query;    ///< decoded; of a parameter given twice, the first
  std::map<std::string, std::string> headers;  ///< names in lower case; of a header given twice, the first
  std::vector<std::string> captures;           ///< decoded: what the route leaves open in the path
  std::string_view body;
  /// False when this takes long and the client has closed the connection, or only its own direction of it: the two look
  /// the same. For the thread that answers.
  std::function<bool()> isWanted = [] { return true; };

  /// The header's value; "" without it. `name` is in lower case.
  std::string Header(const std::string& name) const;
  /// The parameter's value; "" without it.
  std::string Parameter(const std::string& name) const;
};

struct Response {
  int status = 200;
  std::string body;
  std::string contentType = "application/json";
  std::vector<std::pair<std::string, std::string>> headers = {};
  std::string file = {};       ///< instead of the body: path of a file that is removed once it is open
  bool streamsEvents = false;  ///< instead of all this, the connection reports changes until it ends
};

/// Sets path and query of `request` from the target of a request line, "/path?name=value".
void SetTarget(Request& request, std::string_view target);

/// `text` with each %XX replaced by its byte, and, if `plusIsSpace`, each "+" by a space. Other bytes are kept.
std::string PercentDecoded(std::string_view text, bool plusIsSpace = false);

/// The media type of a Content-Type header, in lower case, without parameters.
std::string MediaType(std::string_view contentType);

}  // namespace service
