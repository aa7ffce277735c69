#include "tests/service/RunningService.h"

#include <arpa/inet.h>
#include <gtest/gtest.h>
#include <spawn.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>

#include "net/Json.h"

extern char** environ;

RunningService::RunningService(const std::string& folder, std::vector<std::string> options) {
  // The thread sanitizer does not see how the system's HTTP library, built without it, orders its own accesses.
  setenv("TSAN_OPTIONS", "ignore_noninstrumented_modules=1", 0);
  std::vector<std::string> arguments = {SERVICE, "serve", "--data", folder, "--listen", "127.0.0.1:0"};
  arguments.insert(arguments.end(), options.begin(), options.end());
  std::vector<char*> argv;
  for (auto& argument : arguments) argv.push_back(argument.data());
  argv.push_back(nullptr);
  int output[2];
  if (pipe(output) != 0) return;
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_adddup2(&actions, output[1], 1);
  posix_spawn_file_actions_addclose(&actions, output[0]);
  posix_spawn_file_actions_addclose(&actions, output[1]);
  EXPECT_EQ(posix_spawn(&child_, argv[0], &actions, nullptr, argv.data(), environ), 0);
  posix_spawn_file_actions_destroy(&actions);
  close(output[1]);
  for (char byte; read(output[0], &byte, 1) == 1 && byte != '\n';) url_ += byte;
  close(output[0]);
  EXPECT_EQ(url_.rfind("http://127.0.0.1:", 0), 0u) << url_;
}

RunningService::~RunningService() {
  if (child_ <= 0) return;
  EXPECT_EQ(End(SIGTERM), 0);
}

int RunningService::End(int signal) {
  int status = 0;
  kill(child_, signal);
  waitpid(child_, &status, 0);
  child_ = -1;
  return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
}

int RunningService::SendOnly(const std::string& bytes) const {
  const int connection = socket(AF_INET, SOCK_STREAM, 0);
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  address.sin_port = htons(static_cast<std::uint16_t>(std::stoi(port())));
  if (connect(connection, reinterpret_cast<sockaddr*>(&address), sizeof address) != 0) return connection;
  for (std::size_t sent = 0; sent < bytes.size();) {
    const ssize_t count = send(connection, bytes.data() + sent, bytes.size() - sent, MSG_NOSIGNAL);
    if (count <= 0) break;
    sent += static_cast<std::size_t>(count);
  }
  return connection;
}

std::string RunningService::Exchange(const std::string& bytes) const {
  const int connection = SendOnly(bytes);
  std::string answer;
  char buffer[65536];
  for (ssize_t count; (count = recv(connection, buffer, sizeof buffer, 0)) > 0;)
    answer.append(buffer, static_cast<std::size_t>(count));
  close(connection);
  return answer;
}

std::string Request(const std::string& method, const std::string& path, const std::string& headers,
                    const std::string& body) {
  const std::string length = method == "POST" ? "Content-Length: " + std::to_string(body.size()) + "\r\n" : "";
  return method + ' ' + path + " HTTP/1.1\r\nHost: 127.0.0.1\r\n" + headers + length + "\r\n" + body;
}

namespace {

HttpAnswer Parse(const std::string& bytes) {
  const auto end = bytes.find("\r\n\r\n");
  if (end == std::string::npos) return {};
  return {std::stoi(bytes.substr(9, 3)), bytes.substr(end + 4)};
}

}  // namespace

HttpAnswer RunningService::Get(const std::string& path, const std::string& headers) const {
  return Parse(Exchange(Request("GET", path, "Accept: application/json\r\n" + headers)));
}

HttpAnswer RunningService::Post(const std::string& path, const std::string& body, const std::string& headers) const {
  return Parse(Exchange(Request("POST", path, headers, body)));
}

std::string RunningService::Queue(const std::string& members) const {
  const auto answer = Post("/operator/commands", '{' + members + '}');
  EXPECT_EQ(answer.status, 201) << answer.body;
  return JsonGetString(answer.body, "id");
}

std::string RunningService::Poll() const { return Get("/api/bridge/command/next?licenseKey=K1&version=1.6.16").body; }

std::string RunningService::Told(const std::string& id, const std::string& key) const {
  return JsonGetString(Get("/operator/commands/" + id).body, key.c_str());
}
