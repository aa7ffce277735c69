#include "tests/service/RunningService.h"

#include <arpa/inet.h>
#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>
#include <utility>

#include "net/Json.h"

RunningService::RunningService(const std::string& folder, const std::string& options) {
  // The thread sanitizer does not see how the system's HTTP library, built without it, orders its own accesses.
  setenv("TSAN_OPTIONS", "ignore_noninstrumented_modules=1", 0);
  const std::string serve = "exec " SERVICE " serve --listen 127.0.0.1:0 --data '" + folder + "' " + options;
  output_ = popen(("echo $$; " + serve).c_str(), "re");
  char url[64] = "";
  EXPECT_EQ(std::fscanf(output_, "%d %63s", &process_, url), 2);
  url_ = url;
  EXPECT_TRUE(url_.starts_with("http://127.0.0.1:")) << url_;
}

RunningService::~RunningService() {
  if (output_ != nullptr && End(SIGTERM) != 0) ADD_FAILURE() << "the service did not end well";
}

int RunningService::End(int signal) {
  kill(process_, signal);
  const int status = pclose(std::exchange(output_, nullptr));
  return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
}

int RunningService::SendOnly(const std::string& bytes) const {
  const int connection = socket(AF_INET, SOCK_STREAM, 0);
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  address.sin_port = htons(static_cast<std::uint16_t>(std::stoi(port())));
  if (connect(connection, reinterpret_cast<sockaddr*>(&address), sizeof address) != 0) return connection;
  send(connection, bytes.data(), bytes.size(), MSG_NOSIGNAL);  // blocks until all is sent or refused
  return connection;
}

HttpAnswer RunningService::Exchange(const std::string& bytes) const {
  const int connection = SendOnly(bytes);
  std::string answer;
  char buffer[65536];
  for (ssize_t count; (count = recv(connection, buffer, sizeof buffer, 0)) > 0;)
    answer.append(buffer, static_cast<std::size_t>(count));
  close(connection);
  const auto end = answer.find("\r\n\r\n");
  if (end == answer.npos) return {};
  return {std::stoi(answer.substr(9, 3)), answer.substr(end + 4)};
}

std::string Request(const std::string& method, const std::string& path, const std::string& headers,
                    const std::string& body) {
  const std::string length = method == "POST" ? "Content-Length: " + std::to_string(body.size()) + "\r\n" : "";
  return method + ' ' + path + " HTTP/1.1\r\nHost: 127.0.0.1\r\n" + headers + length + "\r\n" + body;
}

HttpAnswer RunningService::Get(const std::string& path, const std::string& headers) const {
  return Exchange(Request("GET", path, "Accept: application/json\r\n" + headers));
}

HttpAnswer RunningService::Post(const std::string& path, const std::string& body, const std::string& headers) const {
  return Exchange(Request("POST", path, headers, body));
}

std::string RunningService::Queue(const std::string& members) const {
  const auto answer = Post("/operator/commands", '{' + members + '}');
  EXPECT_EQ(answer.status, 201) << answer.body;
  return JsonGetString(answer.body, "id");
}

std::string RunningService::Poll() const { return Get("/api/bridge/command/next?licenseKey=K1&version=1.6.16").body; }

HttpAnswer RunningService::Complete(const std::string& id, const std::string& members) const {
  return Post("/api/bridge/command/" + id + "/complete", R"({"licenseKey":"K1",)" + members + '}');
}

std::string RunningService::Told(const std::string& id, const std::string& key) const {
  return JsonGetString(Get("/operator/commands/" + id).body, key.c_str());
}
