// Whatever is sent to the local service, it goes on answering. The first line is the request line, the second a header,
// the rest the body. If the first line is empty, the rest is sent verbatim.
#include <filesystem>
#include <sstream>

#include "fuzz/Fuzz.h"
#include "http/Server.h"
#include "support/RawConnection.h"

namespace {

std::string NewFolder() {
  std::string pattern = std::filesystem::temp_directory_path() / "varnix-fuzz-XXXXXX";
  return mkdtemp(pattern.data());
}

struct LocalService {
  ~LocalService() { std::filesystem::remove_all(folder); }

  const std::string folder = NewFolder();
  service::Store store{folder};
  service::Context context{store, service::Access(""), service::BodyLimit(1 << 20), "1.0.0", {}};
  const service::Server server{{"127.0.0.1", 0}, context};
};

std::string ToRequest(const std::string& input) {
  if (input.starts_with('\n')) return input.substr(1);
  std::istringstream lines(input);
  std::string line, header, body;
  std::getline(lines, line);
  std::getline(lines, header);
  std::getline(lines, body, '\0');
  return line + " HTTP/1.1\r\nHost: 127.0.0.1\r\nContent-Length: " + std::to_string(body.size()) + "\r\n" + header +
         "\r\n\r\n" + body;
}

/// The answer, or the part that has arrived when nothing more arrives for `patience`: not every request is complete.
std::string Exchange(const std::string& url, const std::string& bytes, timeval patience) {
  RawConnection connection(url, patience);
  connection.Send(bytes);
  return connection.Receive();
}

}  // namespace

void Try(const std::string& input) {
  static const LocalService local;
  const std::string& url = local.context.url;
  Check(!Exchange(url, ToRequest(input), {0, 50'000}).starts_with("HTTP/1.1 500"));
  const std::string next = Exchange(url, "GET /api/plugin/version HTTP/1.1\r\nHost: 127.0.0.1\r\n\r\n", {10, 0});
  Check(next.starts_with("HTTP/1.1 200") && next.ends_with(R"({"version":"1.0.0"})"));
}
