#include "service/RunningService.h"

#include <gtest/gtest.h>

#include <csignal>

#include "net/Json.h"

namespace {

std::vector<std::string> Serve(const std::string& folder, const std::vector<std::string>& options,
                               const std::string& port) {
  std::vector<std::string> arguments{SERVICE, "serve", "--listen=127.0.0.1:" + port, "--data", folder};
  arguments.insert(arguments.end(), options.begin(), options.end());
  return arguments;
}

}  // namespace

RunningService::RunningService(const std::string& folder, const std::vector<std::string>& options,
                               const std::string& port)
    : process_(Serve(folder, options, port), folder + ".log"),
      url_(process_.ReadLine()),
      signInLine_(process_.ReadLine()),
      consoleLine_(process_.ReadLine()) {
  EXPECT_TRUE(url_.starts_with("http://127.0.0.1:")) << url_;
}

RunningService::~RunningService() {
  const int status = End(SIGTERM);
  EXPECT_TRUE(status == 0 || status == -1) << "the service ended with status " << status;
}

httplib::Response RunningService::Exchange(const std::string& method, const std::string& path,
                                           const httplib::Headers& headers, const std::string& body) const {
  httplib::Client client(url_);
  client.set_url_encode(false);
  httplib::Request request;
  request.method = method;
  request.path = path;
  request.headers = headers;
  request.body = body;
  const auto result = client.send(request);
  return result ? *result : httplib::Response();
}

httplib::Response RunningService::Get(const std::string& path, const httplib::Headers& headers) const {
  return Exchange("GET", path, headers);
}

httplib::Response RunningService::Post(const std::string& path, const std::string& body,
                                       const std::string& contentType) const {
  return Exchange("POST", path, {{"Content-Type", contentType}}, body);
}

std::string RunningService::Queue(const std::string& members) const {
  const auto answer = Post("/operator/commands", '{' + members + '}');
  EXPECT_EQ(answer.status, 201) << answer.body;
  return JsonGetString(answer.body, "id");
}

std::string RunningService::Poll() const { return Get("/api/bridge/command/next?licenseKey=K1&version=1.6.16").body; }

httplib::Response RunningService::Complete(const std::string& id, const std::string& members) const {
  return Post("/api/bridge/command/" + id + "/complete", R"({"licenseKey":"K1",)" + members + '}');
}

std::string RunningService::Member(const std::string& id, const std::string& key) const {
  return JsonGetString(Get("/operator/commands/" + id).body, key.c_str());
}
