// What the service refuses, and how it says so.
#include <gtest/gtest.h>

#include <regex>

#include "net/Json.h"
#include "service/RunningService.h"
#include "support/FolderTest.h"

namespace {

using Refusal = FolderTest;

TEST_F(Refusal, SaysWhatIsWrongWithAMessage) {
  const RunningService service(folder_);
  const std::string queued = service.Queue(R"("type":"LIST_FILES")");
  const std::string push = "/api/bridge/push";
  const struct {
    std::string path;
    std::string body;
    int status;
    std::string error;
  } cases[] = {
      {push, "{\"licenseKey\":\"SECRET", 400, "the body is not JSON in UTF-8: error at byte 22"},
      {push, "{\"licenseKey\":\"\xff\"}", 400, "the body is not JSON in UTF-8: error at byte 16"},
      {push, R"({"licenseKey":7})", 400, "licenseKey must be a string"},
      {push, R"({"licenceKey":"K"})", 400, "unknown member licenceKey"},
      {"/api/bridge/command/" + queued + "/complete", R"({"licenseKey":"K","status":"failed"})", 409,
       "the command has not been delivered"},
      {"/api/snapshot/K", R"({"content":"AB==","filename":""})", 400, "content is not base64"},
      {"/operator/commands", R"({"type":"SET_CLIPBOARD","xmlType":"XMSS","xmlContent":"\u0007"})", 400,
       "xmlContent holds control characters, which the plug-in cannot read"},
  };
  for (const auto& [path, body, status, error] : cases) {
    const auto answer = service.Post(path, body);
    EXPECT_EQ(answer.status, status) << path << ' ' << body;
    EXPECT_EQ(answer.body, R"({"error":")" + error + "\"}") << path << ' ' << body;
  }
  EXPECT_EQ(service.Told(queued, "state"), "queued");
}

TEST_F(Refusal, TakesNoCommandForWhatIsNotAPollOfAPlugIn) {
  const RunningService service(folder_);
  const std::string id = service.Queue(R"("type":"LIST_FILES")");
  const std::string poll = "/api/bridge/command/next?licenseKey=K1";
  for (const char* method : {"HEAD", "PUT"}) EXPECT_EQ(service.Exchange(method, poll).status, 405) << method;
  const httplib::Headers ofWebPages[] = {{{"Origin", "http://127.0.0.1:1"}},
                                         {{"Origin", "null"}},
                                         {{"Sec-Fetch-Site", "cross-site"}},
                                         {{"Host", "rebound.example"}}};
  for (const auto& headers : ofWebPages) EXPECT_EQ(service.Get(poll, headers).status, 403) << headers.begin()->second;
  EXPECT_EQ(service.Told(id, "state"), "queued");
  EXPECT_EQ(JsonGetString(service.Get(poll, {{"Sec-Fetch-Site", "none"}}).body, "id"), id);
}

TEST_F(Refusal, ChecksTheKeyOfEveryRequestThatBearsOne) {
  const RunningService service(folder_, "--key Right-1");
  const std::string part = "--B\r\nContent-Disposition: form-data; name=";
  const struct {  // @ stands for the key
    std::string method, path, header, value, body;
    int accepted;
  } requests[] = {
      {"GET", "/api/bridge/command/next?licenseKey=@", "", "", "", 200},
      {"POST", "/api/bridge/push", "", "", R"({"licenseKey":"@","xmlType":"X","xmlContent":""})", 200},
      {"POST", "/api/bridge/command/1/complete", "", "", R"({"licenseKey":"@","status":"failed"})", 404},
      {"POST", "/api/live/ingest/@?filename=f", "", "", "x", 200},
      {"POST", "/api/snapshot/@", "", "", R"({"content":"","filename":""})", 200},
      {"POST", "/api/upload", "Content-Type", "multipart/form-data; boundary=B",
       part + "\"licenseKey\"\r\n\r\n@\r\n" + part + "\"filename\"\r\n\r\nf\r\n" + part +
           "\"file\"\r\n\r\nx\r\n--B--\r\n",
       200},
      {"GET", "/operator/status", "Authorization", "Bearer @", "", 200},
      {"POST", "/operator/commands", "Authorization", "Bearer @", R"({"type":"LIST_FILES"})", 201},
  };
  for (const auto& request : requests) {
    const auto with = [&](const std::string& key) {
      const auto filled = [&](const std::string& text) { return std::regex_replace(text, std::regex("@"), key); };
      httplib::Headers headers;
      if (!request.header.empty()) headers.emplace(request.header, filled(request.value));
      return service.Exchange(request.method, filled(request.path), headers, filled(request.body)).status;
    };
    for (const char* key : {"Right-2", "Right-", "Right-11", ""}) EXPECT_EQ(with(key), 401) << request.path << key;
    EXPECT_EQ(with("Right-1"), request.accepted) << request.path;
  }
  EXPECT_EQ(service.Get("/api/plugin/version").status, 200);
  EXPECT_EQ(service.Get("/operator/status").body, R"({"error":"the account key is wrong"})");
}

TEST_F(Refusal, BoundsBodies) {
  constexpr std::size_t kLimit = 1 << 20;
  const RunningService service(folder_, "--max-body 1");
  const std::string path = "/api/live/ingest/K?filename=f";
  EXPECT_EQ(service.Post(path, std::string(kLimit, 'x')).status, 200);
  EXPECT_EQ(service.Post(path, std::string(kLimit + 1, 'x')).status, 413);
}

}  // namespace
