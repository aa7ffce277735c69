// What the service answers to requests, one by one, and that nobody can stop it.
#include <arpa/inet.h>
#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/stat.h>

#include <csignal>
#include <fstream>
#include <list>
#include <regex>

#include "Server.h"
#include "core/FileDescriptor.h"
#include "net/Json.h"
#include "service/RunningService.h"
#include "support/FolderTest.h"

namespace {

using Requests = FolderTest;

// A connection to a service on which a test sends what no well-behaved client would.
class RawConnection {
 public:
  explicit RawConnection(const std::string& url) : socket_(socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    address.sin_port = htons(static_cast<std::uint16_t>(std::stoi(url.substr(url.rfind(':') + 1))));
    EXPECT_EQ(connect(socket_.get(), reinterpret_cast<sockaddr*>(&address), sizeof address), 0);
  }
  /// False once the service has closed the connection.
  bool Send(const std::string& bytes) {
    return send(socket_.get(), bytes.data(), bytes.size(), MSG_NOSIGNAL) == static_cast<ssize_t>(bytes.size());
  }
  /// What comes until `ending`, or until the service closes.
  std::string Receive(const std::string& ending = "") {
    std::string received;
    for (char byte; (ending.empty() || !received.ends_with(ending)) && recv(socket_.get(), &byte, 1, 0) == 1;)
      received += byte;
    return received;
  }

 private:
  FileDescriptor socket_;
};

std::string Upload(const std::string& key, std::size_t size) {
  return "POST /api/live/ingest/" + key +
         "?filename=f HTTP/1.1\r\nHost: localhost\r\nContent-Length: " + std::to_string(size) + "\r\n\r\n";
}

struct Row {
  std::string request;  // method, path, header lines, after an empty line the body; CRLF and Host are added
  int status;
  std::string answer;
};

std::string Exchange(const std::string& url, const std::string& request) {
  const auto split = request.find("\n\n");
  const std::string body = split == request.npos ? "" : request.substr(split + 2);
  std::string head = std::regex_replace(request.substr(0, split), std::regex("\n"), "\r\n");
  head.insert(std::min(head.size(), head.find("\r\n")), " HTTP/1.1");
  if (head.find("Host:") == head.npos) head += "\r\nHost: localhost";
  if (split != request.npos) head += "\r\nContent-Length: " + std::to_string(body.size());
  RawConnection connection(url);
  connection.Send(head + "\r\n\r\n" + body);
  return connection.Receive();
}

void ExpectAnswers(const std::string& url, const std::vector<Row>& rows) {
  for (const auto& row : rows) {
    const std::string answer = Exchange(url, row.request);
    EXPECT_TRUE(answer.starts_with("HTTP/1.1 " + std::to_string(row.status) + ' ')) << row.request << '\n' << answer;
    EXPECT_TRUE(row.answer.empty() || answer.ends_with("\r\n\r\n" + row.answer)) << row.request << '\n' << answer;
  }
}

std::string Error(const std::string& text) { return R"({"error":")" + text + "\"}"; }

TEST_F(Requests, AreRefusedWithTheReason) {
  const RunningService service(folder_ + "/data");
  const std::string queued = service.Queue(R"("type":"LIST_FILES")");
  const std::string push = "POST /api/bridge/push\n\n";
  const std::string form = "POST /api/upload\nContent-Type: multipart/form-data; boundary=B\n\n";
  const std::string pages = Error("web pages may not use this service");
  const std::string host = Error("the service is known as 127.0.0.1, [::1] or localhost only");
  const std::string notAForm = Error("the form is incomplete or malformed");
  const std::string part = "--B\r\nContent-Disposition: form-data; name=\"file\"\r\n\r\nx\r\n";
  ExpectAnswers(service.url(),
                {{push + "{\"licenseKey\":\"SECRET", 400, Error("the body is not JSON in UTF-8: error at byte 22")},
                 {push + "{\"licenseKey\":\"\xff\"}", 400, Error("the body is not JSON in UTF-8: error at byte 16")},
                 {push + R"({"licenseKey":7})", 400, Error("licenseKey must be a string")},
                 {push + R"({"licenceKey":"K"})", 400, Error("unknown member licenceKey")},
                 {push + R"({"licenseKey":"K","licenseKey":"K"})", 400, Error("licenseKey is given twice")},
                 {push + R"(["K"])", 400, Error("the body must be a JSON object")},
                 {push + R"({"licenseKey":"K","xmlType":"X"})", 400, Error("xmlContent is missing")},
                 {"POST /api/bridge/command/" + queued + "/complete\n\n" + R"({"licenseKey":"K","status":"failed"})",
                  409, Error("the command has not been delivered")},
                 {"POST /api/bridge/command/x/complete\n\n" + std::string(R"({"licenseKey":"K","status":"failed"})"),
                  404, Error("no such command")},
                 {"POST /api/snapshot/K\n\n" + std::string(R"({"content":"AB==","filename":""})"), 400,
                  Error("content is not base64")},
                 {"POST /api/live/ingest/K?filename=%FF\n\nx", 400, Error("the file name is not UTF-8")},
                 {"POST /api/live/ingest/K\n\nx", 400, Error("filename is missing")},
                 {"POST /operator/commands\n\n" +
                      std::string(R"({"type":"SET_CLIPBOARD","xmlType":"XMSS","xmlContent":"\u0007"})"),
                  400, Error("xmlContent has control characters, which the plug-in cannot read")},
                 {"POST /operator/commands\n\n" + std::string(R"({"type":"LIST_FILES","expires":"0"})"), 400, ""},
                 {"GET /operator/commands?limit=1001", 400, Error("limit must be a number from 1 to 1000")},
                 {"GET /operator/records/99/content", 404, Error("no such record")},
                 {"GET /operator/commands/" + queued + "/result", 404, Error("the command has no result")},
                 {"GET /no/such/place", 404, Error("not found")},
                 {"PUT /api/bridge/push", 405, Error("method not allowed")},
                 {"HEAD /api/bridge/command/next?licenseKey=K", 405, ""},
                 {"POST /api/bridge/push", 411, Error("Content-Length is missing")},
                 {"POST /api/bridge/push\nContent-Type: multipart/form-data; boundary=B\n\nx", 415,
                  Error("a form is not accepted")},
                 {"POST /api/upload\n\nx", 415, Error("a multipart form is expected")},
                 {form + "x", 400, notAForm},
                 {form + part, 400, notAForm},
                 {form + part + part + "--B--\r\n", 400, Error("the form has a part twice")},
                 {form + part + "--B--\r\n", 400, Error("the form has no part licenseKey")},
                 {"GET", 400, Error("not an HTTP request")},
                 {"GET /api/bridge/command/next\nOrigin: http://127.0.0.1:1", 403, pages},
                 {"GET /api/bridge/command/next\nOrigin: null", 403, pages},
                 {"GET /api/bridge/command/next\nSec-Fetch-Site: cross-site", 403, pages},
                 {"GET /api/bridge/command/next\nSec-Fetch-Site: same-site", 403, pages},
                 {"GET /api/bridge/command/next\nHost: localhost.evil.example", 403, host},
                 {"GET /api/bridge/command/next\nHost: 128.0.0.1:80", 403, host},
                 {"GET /api/bridge/command/next\nHost: [::2]:80", 403, host},
                 {"GET /api/plugin/version\nHost: [::1]:80", 200, R"({"version":"1.6.16"})"},
                 {"GET /api/plugin/version\nHost: 127.9.9.9", 200, ""}});
  EXPECT_EQ(service.Told(queued, "state"), "queued");
  EXPECT_EQ(JsonGetString(service.Get("/api/bridge/command/next", {{"Sec-Fetch-Site", "none"}}).body, "id"), queued);
}

TEST_F(Requests, NeedTheKeyBeforeTheirBodyIsRead) {
  const RunningService service(folder_ + "/data", {"--key=Right-1"});
  const std::string part = "--B\r\nContent-Disposition: form-data; name=";
  const std::vector<Row> rows{
      // @ stands for the key
      {"GET /api/bridge/command/next?licenseKey=@", 200, ""},
      {"POST /api/bridge/push\n\n" + std::string(R"({"licenseKey":"@","xmlType":"X","xmlContent":""})"), 200, ""},
      {"POST /api/bridge/command/1/complete\n\n" + std::string(R"({"licenseKey":"@","status":"failed"})"), 404, ""},
      {"POST /api/live/ingest/@?filename=f\n\nx", 200, ""},
      {"POST /api/snapshot/@\n\n" + std::string(R"({"content":"","filename":""})"), 200, ""},
      {"POST /api/upload\nContent-Type: multipart/form-data; boundary=\"B\"\n\n" + part +
           "\"licenseKey\"\r\n\r\n@\r\n" + part + "\"filename\"\r\n\r\nf\r\n" + part + "\"file\"\r\n\r\nx\r\n--B--\r\n",
       200, ""},
      {"GET /operator/status\nAuthorization: Bearer @", 200, ""},
      {"POST /operator/commands\nAuthorization: Bearer @\n\n" + std::string(R"({"type":"LIST_FILES"})"), 201, ""},
      {"GET /operator/commands\nHost: known.example\nAuthorization: Bearer @", 200, ""},
  };
  for (const char* key : {"Right-2", "Right-", "Right-11", "", "Right-1"}) {
    for (Row row : rows) {
      row.request = std::regex_replace(row.request, std::regex("@"), key);
      if (std::string(key) != "Right-1") row.status = 401, row.answer = Error("the account key is wrong");
      ExpectAnswers(service.url(), {row});
    }
  }
  ExpectAnswers(service.url(), {{"GET /api/plugin/version", 200, R"({"version":"1.6.16"})"}});
  RawConnection upload(service.url());
  upload.Send(Upload("Wrong", 1 << 20));
  EXPECT_TRUE(upload.Receive("}").starts_with("HTTP/1.1 401 "));
  RawConnection push(service.url());
  push.Send("POST /api/bridge/push HTTP/1.1\r\nHost: localhost\r\nContent-Length: 1000000\r\n\r\n" +
            std::string(100'000, ' '));
  EXPECT_TRUE(push.Receive("}").starts_with("HTTP/1.1 401 "));
  RawConnection asked(service.url());
  asked.Send(
      "POST /api/live/ingest/Right-1?filename=f HTTP/1.1\r\nHost: localhost\r\nExpect: 100-continue\r\n"
      "Content-Length: 1\r\n\r\n");
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

TEST_F(Requests, ThatNeverEndKeepNobodyFromBeingServed) {
  RunningService service(folder_ + "/data", {"--key=K"});
  std::list<RawConnection> dripping;
  for (int i = 0; i < 700; ++i) dripping.emplace_back(service.url()).Send("GET / HT");
  ExpectAnswers(service.url(), {{"GET /api/plugin/version", 200, ""}});
  RawConnection endless(service.url());
  endless.Send("GET / HTTP/1.1\r\n");
  for (int i = 0; i < 100 && endless.Send("X: " + std::string(1000, 'x') + "\r\n"); ++i) continue;
  ExpectAnswers(service.url(), {{"GET /api/plugin/version", 200, ""}});
  dripping.emplace_back(service.url()).Send(Upload("K", 100) + "x");
  EXPECT_EQ(service.End(SIGTERM), 0);
}

TEST_F(Requests, AreGivenUpAfterTheirTime) {
  service::Store store(folder_ + "/data");
  const auto serve = [&](service::Times times, const std::string& request) {
    service::Context context{store, service::Access(""), service::BodyLimit(1 << 20), "1", {}, times};
    const service::Server server({"127.0.0.1", 0}, context);
    RawConnection connection(server.url());
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
