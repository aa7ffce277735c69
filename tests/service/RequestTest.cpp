// The service's answers to single requests; no client can stop it.
#include <gtest/gtest.h>

#include <csignal>
#include <list>

#include "http/Server.h"
#include "net/Json.h"
#include "service/RequestRows.h"
#include "service/RunningService.h"
#include "support/FolderTest.h"
#include "support/RawConnection.h"

namespace {

using Requests = FolderTest;

// An upload's first lines, and `headers`, each of them ended by CRLF.
std::string Upload(const std::string& key, std::size_t size, const std::string& headers = "") {
  return "POST /api/live/ingest/" + key + "?filename=f HTTP/1.1\r\nHost: localhost\r\n" + headers +
         "Content-Length: " + std::to_string(size) + "\r\n\r\n";
}

const std::vector<Row> kVersion{
    {"GET /api/plugin/version HTTP/1.1\r\nHost: localhost\r\n\r\n", R"(200 {"version":"1.6.16"})"}};

TEST_F(Requests, AreRefusedWithTheReason) {
  const RunningService service(folder_ + "/data");
  const std::string queued = service.Queue(R"("type":"LIST_FILES")");
  ExpectAnswers(service.url(), ReadRows("refused.txt", {{"{queued}", queued}, {"{FF}", "\xFF"}}));
  EXPECT_EQ(service.Member(queued, "state"), "queued");
  EXPECT_EQ(JsonGetString(service.Get("/api/bridge/command/next", {{"Sec-Fetch-Site", "none"}}).body, "id"), queued);
}

TEST_F(Requests, NeedTheKeyBeforeTheirBodyIsRead) {
  const RunningService service(folder_ + "/data", {"--key=Right-1"});
  for (const char* key : {"Right-2", "Right-", "Right-11", "", "Right-1"}) {
    for (Row row : ReadRows("keyed.txt", {{"{key}", key}})) {
      if (std::string(key) != "Right-1") row.answer = R"(401 {"error":"the account key is wrong"})";
      ExpectAnswers(service.url(), {row});
    }
  }
  ExpectAnswers(service.url(), kVersion);
  RawConnection upload(service.url());
  upload.Send(Upload("Wrong", 1 << 20));
  EXPECT_TRUE(upload.Receive("}").starts_with("HTTP/1.1 401 "));
  RawConnection push(service.url());
  push.Send("POST /api/bridge/push HTTP/1.1\r\nHost: localhost\r\nContent-Length: 1000000\r\n\r\n" +
            std::string(100'000, ' '));
  EXPECT_TRUE(push.Receive("}").starts_with("HTTP/1.1 401 "));
  RawConnection asked(service.url());
  asked.Send(Upload("Right-1", 1, "Expect: 100-continue\r\n"));
  EXPECT_EQ(asked.Receive("\r\n\r\n"), "HTTP/1.1 100 Continue\r\n\r\n");
  asked.Send("x");
  EXPECT_TRUE(asked.Receive().starts_with("HTTP/1.1 200 "));
}

TEST_F(Requests, AreBoundedInTheirBodiesOneByOneAndTogether) {
  constexpr std::size_t kLimit = 1 << 20;
  const RunningService service(folder_ + "/data", {"--no-key", "--max-body=1"});
  const std::string path = "/api/live/ingest/K?filename=f";
  EXPECT_EQ(service.Post(path, std::string(kLimit, 'x')).status, 200);
  EXPECT_EQ(service.Post(path, std::string(kLimit + 1, 'x')).status, 413);
  EXPECT_EQ(service.Exchange("POST", "/api/bridge/diagnostic", {}, std::string(70'000, ' ')).status, 413);
  std::list<RawConnection> unfinished;
  do {
    unfinished.emplace_back(service.url()).Send(Upload("K", kLimit) + std::string(kLimit - 1, 'x'));
  } while (service.Post(path, std::string(kLimit, 'x')).status != 503);
  unfinished.clear();
  while (service.Post(path, std::string(kLimit, 'x')).status != 200) continue;
}

TEST_F(Requests, ThatNeverEndDoNotBlockOthers) {
  RunningService service(folder_ + "/data", {"--key=K"});
  std::list<RawConnection> dripping;
  for (int i = 0; i < 700; ++i) dripping.emplace_back(service.url()).Send("GET / HT");
  ExpectAnswers(service.url(), kVersion);
  RawConnection endless(service.url());
  endless.Send("GET / HTTP/1.1\r\n");
  for (int i = 0; i < 100 && endless.Send("X: " + std::string(1000, 'x') + "\r\n"); ++i) continue;
  ExpectAnswers(service.url(), kVersion);
  dripping.emplace_back(service.url()).Send(Upload("K", 100) + "x");
  EXPECT_EQ(service.End(SIGTERM), 0);
}

TEST_F(Requests, AreGivenUpAfterTheirTime) {
  service::Store store(folder_ + "/data");
  const auto serve = [&](service::Times times, const std::string& request) {
    service::Context context{store, service::Access(""), service::BodyLimit(1 << 20), "1", {}, times};
    const service::Server server({"127.0.0.1", 0}, context);
    RawConnection connection(context.url);
    connection.Send(request);
    return connection.Receive();
  };
  using std::chrono::milliseconds;
  service::Times head, silence, request;
  head.head = silence.silence = request.request = milliseconds(1);
  EXPECT_EQ(serve(head, "GET / HT"), "");
  EXPECT_EQ(serve(silence, Upload("K", 2) + "x"), "");
  EXPECT_EQ(serve(request, Upload("K", 2) + "x"), "");
}

TEST_F(Requests, FailOnceTheDatabaseIsRemoved) {
  const RunningService service(folder_ + "/data");
  std::filesystem::remove(folder_ + "/data/varnix-service.db");
  const auto answer = service.Get("/api/bridge/command/next?licenseKey=K");
  EXPECT_EQ(answer.status, 503) << answer.body;
}

}  // namespace
