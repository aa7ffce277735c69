// The bridge protocol as the plug-in sends and reads it, and what the service stores.
#include <gtest/gtest.h>

#include <csignal>
#include <mutex>
#include <optional>
#include <set>
#include <thread>
#include <vector>

#include "net/Base64.h"
#include "net/Json.h"
#include "service/RunningService.h"
#include "support/FolderTest.h"

namespace {

constexpr char kListFiles[] = R"("type":"LIST_FILES")";
constexpr char kNothing[] = R"({"command":null})";

class Protocol : public FolderTest {
 protected:
  // Queues, polls, lets `answer` send what the plug-in would, and completes. Returns the command's id.
  template <class Answer>
  std::string CarryOut(const std::string& members, Answer answer) {
    const std::string id = service_->Queue(members);
    EXPECT_EQ(JsonGetString(service_->Poll(), "id"), id);
    answer();
    EXPECT_EQ(service_->Complete(id).body, R"({"ok":true})");
    return id;
  }

  void Ingest(const std::string& fileName, const std::string& bytes) {
    const auto answer = service_->Post("/api/live/ingest/K1?filename=" + fileName, bytes, "application/octet-stream");
    EXPECT_EQ(answer.status, 200) << answer.body;
  }

  std::string Result(const std::string& id) { return service_->Get("/operator/commands/" + id + "/result").body; }

  // The content of the newest record.
  std::string NewestContent() {
    const std::string records = service_->Get("/operator/records?limit=1").body;
    const auto number = records.find(R"("number":)") + 9;
    return service_->Get("/operator/records/" + records.substr(number, records.find(',', number) - number) + "/content")
        .body;
  }

  std::optional<RunningService> service_{std::in_place, folder_ + "/data"};
};

std::string AllBytes() {
  std::string bytes;
  for (int byte = 0; byte < 256; ++byte) bytes += static_cast<char>(byte);
  return bytes;
}

TEST_F(Protocol, AnswersNoCommandInTheSpellingThatThePlugInLooksFor) {
  EXPECT_EQ(service_->Poll(), kNothing);
  EXPECT_EQ(service_->Get("/api/plugin/version").body, R"({"version":"1.6.16"})");
  const char* signIn = R"({"email":"E1","licenseKey":"K1","machineId":"M1","pluginVersion":"1.6.16"})";
  EXPECT_EQ(service_->Post("/api/bridge/register", signIn).body, R"({"ok":true,"record":1})");
}

TEST_F(Protocol, DeliversCommandsInOrderAsOneCompactObject) {
  const std::string commands[] = {
      R"("type":"GET_CLIPBOARD")", R"("type":"DEBUG_CONTEXT","fileName":"Büro \"A\"")",
      R"("type":"SET_CLIPBOARD","xmlType":"XMSS","xmlContent":"<a b=\"\\\">\t\r\n\"type\":\"X\" 😀</a>")"};
  std::vector<std::string> ids;
  for (const auto& command : commands) ids.push_back(service_->Queue(command));
  for (std::size_t i = 0; i < std::size(commands); ++i) {
    EXPECT_EQ(service_->Poll(), R"({"command":{"id":")" + ids[i] + R"(",)" + commands[i] + "}}");
  }
  EXPECT_EQ(service_->Poll(), kNothing);
}

TEST_F(Protocol, RepeatsACommandAsItWasQueued) {
  const std::string command = R"("type":"SET_CLIPBOARD","xmlType":"XMSS","xmlContent":"<a b=\"\\\">\t😀</a>")";
  const auto path = "/operator/commands/" + CarryOut(command, [] {}) + "/repeat";
  const auto answer = service_->Exchange("POST", path, {{"Varnix-Agent", "helper"}}, "{}");
  EXPECT_EQ(answer.status, 201);
  const std::string id = JsonGetString(answer.body, "id");
  EXPECT_EQ(service_->Member(id, "by"), "agent helper");
  EXPECT_EQ(service_->Poll(), R"({"command":{"id":")" + id + R"(",)" + command + "}}");
  EXPECT_EQ(service_->Post("/operator/commands/x/repeat", "{}").status, 404);
}

TEST_F(Protocol, KeepsTheLiveUploadOfTheFileAskedForByteForByte) {
  const auto id = CarryOut(R"("type":"GET_SCHEMA","fileName":"My Büro")", [&] {
    service_->Post("/api/bridge/diagnostic",
                   R"({"licenseKey":"K1","code":"LC_SCHEMA_QUEUED","status":"received","message":"Queued — \"T\""})");
    Ingest("My%20B%C3%BCro.fmp12.xml", AllBytes());
    Ingest("Other.fmp12.xml", "not this");
  });
  EXPECT_EQ(Result(id), AllBytes());
  EXPECT_EQ(service_->Member(id, "message"), "Queued — \"T\"");
  EXPECT_EQ(service_->Member(id, "state"), "completed");
  EXPECT_EQ(Result(CarryOut(R"("type":"GET_SCHEMA")", [&] { Ingest("schema.fmp12.xml", ""); })), "");
}

TEST_F(Protocol, AcceptsSnapshotsAndForms) {
  for (const std::string& file : {AllBytes(), std::string("x"), std::string()}) {
    service_->Post("/api/snapshot/K1", R"({"content":")" + Base64Encode(file) + R"(","filename":"b.xml"})");
    EXPECT_EQ(NewestContent(), file);
  }
  const std::string file = "\r\n--BoundarY\r\n" + AllBytes() + "\r\n--Boundar\r\n";
  const std::string part = "--Boundary\r\nContent-Disposition: form-data; name=";
  service_->Post("/api/upload",
                 part + "\"licenseKey\"\r\n\r\nK1\r\n" + part + "\"filename\"\r\n\r\nä \"b\".xml\r\n" + part +
                     "\"file\"; filename=\"ä \"b\".xml\"\r\nContent-Type: application/xml\r\n\r\n" + file +
                     "\r\n--Boundary--\r\n",
                 "multipart/form-data; boundary=Boundary");
  EXPECT_EQ(NewestContent(), file);
  EXPECT_EQ(JsonGetString(service_->Get("/operator/records?kind=upload").body, "name"), "ä \"b\".xml");
}

TEST_F(Protocol, TheFirstCompletionHolds) {
  const auto failed = service_->Queue(kListFiles);
  service_->Poll();
  for (int sent = 0; sent < 2; ++sent) {  // sent again, answered again
    EXPECT_EQ(service_->Complete(failed, R"("status":"failed","error":"ERROR: HTTP 500 — \"x\"")").status, 200);
  }
  EXPECT_EQ(service_->Complete(failed).status, 409);
  EXPECT_EQ(service_->Member(failed, "state"), "failed");
  EXPECT_EQ(service_->Member(failed, "error"), "ERROR: HTTP 500 — \"x\"");
}

TEST_F(Protocol, DeliversEachCommandOnceToPollsAtTheSameTime) {
  std::multiset<std::string> queued, delivered;
  const char* kSetClipboard = R"("type":"SET_CLIPBOARD","xmlType":"XMSS","xmlContent":"<fmxmlsnippet/>")";
  for (int i = 0; i < 60; ++i) queued.insert(service_->Queue(kSetClipboard));
  std::mutex mutex;
  std::vector<std::thread> plugins;
  for (int i = 0; i < 8; ++i) {
    plugins.emplace_back([&] {
      for (std::string id; !(id = JsonGetString(service_->Poll(), "id")).empty();) {
        const std::lock_guard lock(mutex);
        delivered.insert(id);
      }
    });
  }
  for (auto& plugin : plugins) plugin.join();
  EXPECT_EQ(delivered, queued);
}

TEST_F(Protocol, DeliversNoCommandTwiceAlthoughTheServiceIsKilled) {
  const std::string id = service_->Queue(kListFiles);
  service_->Poll();
  EXPECT_EQ(service_->End(SIGKILL), 128 + SIGKILL);
  service_.emplace(folder_ + "/data");
  EXPECT_EQ(service_->Poll(), kNothing);
  EXPECT_EQ(service_->Member(id, "state"), "delivered");
  EXPECT_EQ(service_->Complete(id, R"("status":"failed","error":"late")").status, 200);
  EXPECT_EQ(service_->Member(id, "error"), "late");
}

}  // namespace
