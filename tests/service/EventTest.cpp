// Events that report changes to pages. Pages that hang disturb nobody.
#include <gtest/gtest.h>

#include <chrono>
#include <csignal>
#include <list>

#include "console/Watch.h"
#include "http/Server.h"
#include "net/Json.h"
#include "service/RunningService.h"
#include "support/FolderTest.h"
#include "support/RawConnection.h"

namespace {

using std::chrono::milliseconds;
using Clock = std::chrono::steady_clock;

constexpr char kHead[] =
    "HTTP/1.1 200 OK\r\nContent-Type: text/event-stream\r\nCache-Control: no-store\r\n"
    "X-Content-Type-Options: nosniff\r\nConnection: close\r\n\r\nevent: hello\ndata: {\"version\":\"1.6.16\"}\n\n";
constexpr std::size_t kMost = service::EventHub::kMost;

// A page that listens. Gives up when nothing arrives for a while.
class Page : public RawConnection {
 public:
  explicit Page(const std::string& url, const std::string& headers = "Host: localhost\r\n")
      : RawConnection(url, {30, 0}) {
    Send("GET /operator/events HTTP/1.1\r\n" + headers + "\r\n");
  }

  // Waits for the start of the answer: the head and the first event, or the status line of an error.
  std::string Begin() {
    const std::string line = Receive("\r\n");
    return line.find(" 200 ") == line.npos ? line : line + Receive("}\n\n");
  }

  void Expect(const std::string& event, const std::string& reason) {
    const std::string text = "event: " + event + "\ndata: {}\n\n";
    EXPECT_TRUE(Receive(text).ends_with(text)) << reason;
  }
};

class Events : public FolderTest {
 protected:
  const std::string data_ = folder_ + "/data";
};

TEST_F(Events, ReportWhatHasChanged) {
  const RunningService service(data_);
  Page page(service.url());
  EXPECT_EQ(page.Begin(), kHead);
  const std::string id = service.Queue(R"("type":"LIST_FILES")");
  page.Expect("commands", "queued");
  EXPECT_EQ(JsonGetString(service.Poll(), "id"), id);
  page.Expect("commands", "delivered");
  page.Expect("status", "the first poll");
  service.Post("/api/bridge/push", R"({"licenseKey":"K","xmlType":"XMSS","xmlContent":"<fmxmlsnippet/>","label":"L"})");
  page.Expect("records", "pushed");
  page.Expect("clips", "pushed");
  service.Complete(id);
  page.Expect("commands", "completed");
  page.Expect("records", "the record now belongs to the command");
  service.Post("/api/bridge/register", R"({"email":"E","licenseKey":"K","machineId":"M","pluginVersion":"1"})");
  page.Expect("status", "signed in");
  service.Post("/api/live/ingest/K?filename=A.xml", Contents(ORDERS));
  page.Expect("records", "received");
  page.Expect("designs", "indexed");
  EXPECT_EQ(RunProcess({SERVICE, "label", "3", "release", "--data", data_}).status, 0);
  page.Expect("designs", "labelled by another program");
  service.Post("/operator/commands/" + service.Queue(R"("type":"LIST_FILES")") + "/cancel", "{}");
  page.Expect("commands", "queued");
  page.Expect("commands", "cancelled");
  service.Queue(R"("type":"LIST_FILES","expires":"1")");
  page.Expect("commands", "queued");
  page.Expect("commands", "expired, though nobody asks");
  service.Post("/operator/prune", R"({"keep":"0"})");
  page.Expect("records", "deleted");
  page.Expect("designs", "deleted");
}

TEST_F(Events, AreForThePageWithASession) {
  const RunningService service(data_, {});
  EXPECT_TRUE(Page(service.url()).Begin().starts_with("HTTP/1.1 401 "));
  EXPECT_TRUE(
      Page(service.url(), "Host: localhost\r\nSec-Fetch-Site: cross-site\r\n").Begin().starts_with("HTTP/1.1 403 "));
}

TEST_F(Events, ToHungPagesDoNotDelayOthers) {
  RunningService service(data_);
  std::list<Page> pages;
  for (std::size_t i = 0; i < kMost; ++i) EXPECT_EQ(pages.emplace_back(service.url()).Begin(), kHead);
  EXPECT_TRUE(Page(service.url()).Begin().starts_with("HTTP/1.1 503 "));
  std::list<RawConnection> dripping;
  constexpr const char* kBegun[] = {"GET / HT",
                                    "POST /console/session HTTP/1.1\r\nHost: localhost\r\nContent-Length: 9\r\n\r\n{"};
  for (int i = 0; i < 600; ++i) dripping.emplace_back(service.url()).Send(kBegun[i % 10 == 0 ? 0 : 1]);
  service.Queue(R"("type":"LIST_FILES")");
  for (auto& page : pages) page.Expect("commands", "none of them was put out for the others");
  pages.pop_front();
  while (Page(service.url()).Begin() != kHead) continue;
  const auto begin = Clock::now();
  EXPECT_EQ(service.End(SIGTERM), 0);
  EXPECT_LT(Clock::now() - begin, service::Times().end);
}

TEST_F(Events, GoOnBeyondTheTimeOfARequestAndEndForAPageThatDoesNotRead) {
  service::Store store(data_);
  service::Times times;
  times.request = milliseconds(2000);
  times.comment = milliseconds(600);
  times.silence = milliseconds(500);
  service::Context context{store, service::Access(""), service::BodyLimit(1 << 20), "1", {}, times};
  const service::Server server({"127.0.0.1", 0}, context);
  Page page(context.url);
  EXPECT_EQ(page.Begin(), kHead);
  for (int i = 0; i < 4; ++i) EXPECT_EQ(page.Receive(":\n\n"), ":\n\n");
  struct Other : service::EventListener {
    void Report(service::Topic) override {}
    void End() override {}
  };
  const auto other = std::make_shared<Other>();
  while (context.events.Join(other)) continue;
  while (!context.events.HasRoom()) context.events.Fire(service::Topic::kStatus);
}

TEST_F(Events, ReportWhenThePlugInStopsAsking) {
  service::Store store(data_);
  service::Times times;
  times.watch = milliseconds(1);
  times.poll = milliseconds(1500);
  service::Context context{store, service::Access(""), service::BodyLimit(1 << 20), "1", {}, times};
  const service::Watch watch(context);
  const service::Server server({"127.0.0.1", 0}, context);
  Page page(context.url);
  EXPECT_EQ(page.Begin(), kHead);
  context.lastPoll.Note("1");
  page.Expect("status", "it has begun");
  page.Expect("status", "it has stopped");
}

}  // namespace
