// Designs that the service has received, through its subcommands.
#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <csignal>
#include <fstream>
#include <list>
#include <optional>
#include <regex>
#include <thread>

#include "designs/DesignStore.h"
#include "service/RunningService.h"
#include "support/FolderTest.h"
#include "support/Process.h"
#include "support/RawConnection.h"

namespace {

std::string Replaced(std::string text, const std::string& from, const std::string& to) {
  return text.replace(text.find(from), from.size(), to);
}

class DesignHistory : public FolderTest {
 protected:
  ProcessResult Service(std::vector<std::string> arguments) const {
    arguments.insert(arguments.begin(), SERVICE);
    arguments.insert(arguments.end(), {"--data", data_});
    return RunProcess(arguments);
  }

  static void Upload(const RunningService& service, const std::string& name, const std::string& content) {
    EXPECT_EQ(service.Post("/api/live/ingest/K1?filename=" + name, content).status, 200);
  }

  std::string Log() const { return Contents(data_ + ".log"); }

  // Waits until the log contains `text`.
  void AwaitLog(const std::string& text) const {
    while (Log().find(text) == std::string::npos) std::this_thread::yield();
  }

  const std::string data_ = folder_ + "/data";
  const std::string orders_ = Contents(ORDERS);
  const std::string edited_ = Replaced(orders_, "[\"Open\"]", "[\"Shut\"]");
};

TEST_F(DesignHistory, ListsComparesAndSearchesWithAndWithoutTheService) {
  {
    const RunningService service(data_);
    Upload(service, "Orders.fmp12.xml", orders_);
    Upload(service, "Orders.fmp12.xml", orders_);
    Upload(service, "Orders.fmp12.xml", edited_);
    Upload(service, "Broken.fmp12.xml", orders_.substr(0, 3000));
    EXPECT_EQ(Service({"label", "3", "release 2", "--note", "as sold"}).status, 0);
    EXPECT_NE(Service({"designs", "orders"}).output.find("release 2  as sold\n"), std::string::npos);
    EXPECT_EQ(service.Post("/operator/designs/3/label", R"({"note":"as delivered"})").status, 200);
    EXPECT_NE(Service({"designs", "orders"}).output.find("release 2  as delivered\n"), std::string::npos);
  }
  EXPECT_EQ(Service({"label", "3", "K\xF6ln"}).status, 0) << "a terminal need not send UTF-8";
  const std::string list = Service({"designs", "--json"}).output;
  EXPECT_EQ(std::count(list.begin(), list.end(), '\n'), 3) << "what came again is not listed again: " << list;
  EXPECT_NE(list.find(R"("fileName":"Broken.fmp12")"), std::string::npos) << list;
  EXPECT_NE(list.find(R"("problem":"Broken.fmp12.xml is )"), std::string::npos) << list;
  const std::string changes = Service({"changes", "Orders", "--json"}).output;
  EXPECT_NE(changes.find(R"("properties":["steps"])"), std::string::npos) << changes;
  EXPECT_EQ(Service({"changes", "1", "3", "--json"}).output, changes);
  EXPECT_EQ(Service({"references", "3", "--of", "Reset"}).output,
            Service({"references", ORDERS, "--of", "Reset"}).output);
  EXPECT_EQ(Service({"export", "Orders.fmp12", folder_ + "/text"}).status, 0);
  for (const char* text : {"shut", "SHU", "\"shut\""}) {
    const std::string hit = Service({"search", text, "--json"}).output;
    EXPECT_TRUE(hit.starts_with(R"({"firstDesign":3,"lastDesign":3,"fileName":"Orders.fmp12","kind":"script")")) << hit;
    EXPECT_NE(hit.find(R"(Set Field [ Orders::Status ; \"Shut\" ]")"), std::string::npos) << hit;
  }
  EXPECT_NE(Service({"search", "id", "Orders"}).output.find("designs 1 to 3"), std::string::npos) << "a short text";
}

TEST_F(DesignHistory, RefusesWhatItDoesNotHave) {
  EXPECT_EQ(Service({"designs"}).errors, "varnix-service: " + data_ + " has no designs: no service has used it yet\n");
  { const RunningService service(data_); }
  const struct {
    std::vector<std::string> arguments;
    std::string error;
  } cases[] = {
      {{"label", "7", "x"}, "there is no design 7"},
      {{"references", "7"}, "there is no design 7"},
      {{"references", "Sales"}, "there is no design of Sales; a path contains / or ends in .xml"},
      {{"changes", "Sales"}, "there is no design of Sales; a path contains / or ends in .xml"},
      {{"search", "anything"}, "no design contains anything"},
  };
  for (const auto& [arguments, error] : cases) {
    const auto result = Service(arguments);
    EXPECT_EQ(result.status, 1) << error;
    EXPECT_EQ(result.errors, "varnix-service: " + error + '\n');
  }
}

TEST_F(DesignHistory, AnswersRequests) {
  const RunningService service(data_);
  Upload(service, "Orders.fmp12.xml", orders_);
  Upload(service, "Orders.fmp12.xml", edited_);
  Upload(service, "Broken.fmp12.xml", orders_.substr(0, 3000));
  Upload(service, "Old.fmp12.xml", std::regex_replace(orders_, std::regex("<UUID.*?</UUID>| UUID=\".*?\""), ""));
  std::string hostile = Replaced(orders_, "name=\"Unused\"", "name=\"&lt;/script>&quot;/\\&#9;\"");
  hostile = Replaced(hostile, "View=\"Full\"", "View=\"Collapse\"");
  hostile = Replaced(hostile, "</CoordRect>", "</CoordRect><Color red=\"120\" green=\"300\" blue=\"-1\"></Color>");
  hostile =
      Replaced(hostile, "</TableOccurrenceCatalog>", Contents(DATA "/graph-notes.xml") + "</TableOccurrenceCatalog>");
  Upload(service, "Hostile.fmp12.xml", hostile);
  EXPECT_EQ(Service({"designs"}).status, 0) << "all are indexed now";
  std::ifstream rows(DATA "/designs.txt");
  std::string line;
  httplib::Response answer;
  int requests = 0;
  while (std::getline(rows, line)) {
    if (line.starts_with('/') || line.starts_with('?')) {
      const auto space = line.find(' ');
      answer = service.Get("/operator/designs" + line.substr(0, space));
      EXPECT_EQ(answer.status, std::stoi(line.substr(space))) << line << ": " << answer.body;
      ++requests;
    } else if (!line.starts_with('#')) {
      EXPECT_NE(answer.body.find(line), std::string::npos) << line << " is not in " << answer.body.substr(0, 2000);
    }
  }
  EXPECT_GT(requests, 0);
}

TEST_F(DesignHistory, GivesUpASearchForWhichNobodyWaits) {
  const RunningService service(data_);
  Upload(service, "Orders.fmp12.xml", orders_);
  EXPECT_EQ(Service({"designs"}).status, 0);
  service::DesignStore history(data_);
  const auto ask = [&](const std::string& path, const std::string& content, std::chrono::milliseconds wait) {
    service::Database index(data_ + "/varnix-designs.db");
    std::optional<service::Transaction> writing(
        std::in_place,
        index);  // the index waits for that, and the answer a second for the index
    Upload(service, "Orders.fmp12.xml", content);
    RawConnection connection(service.url());
    connection.Send("GET /operator/designs" + path + " HTTP/1.1\r\nHost: localhost\r\n\r\n");
    connection.EndSending();
    std::this_thread::sleep_for(wait);
    writing.reset();
    return connection.Receive().substr(0, 12);
  };
  using std::chrono::milliseconds;
  EXPECT_EQ(ask("/search?text=Status", edited_, milliseconds(2000)), "HTTP/1.1 499");
  EXPECT_EQ(ask("/search?text=Status", orders_, milliseconds(0)), "HTTP/1.1 200") << "it was quick";
  EXPECT_EQ(ask("", orders_, milliseconds(2000)), "HTTP/1.1 200") << "it is no search";
  int hits = 0, questions = 0;
  const auto search = [&](int patience) {
    questions = hits = 0;
    return history.Search(
        "a", "", [&](const auto&) { ++hits; }, [&] { return ++questions <= patience; });
  };
  EXPECT_TRUE(search(1000));
  EXPECT_GT(hits, 20);
  EXPECT_FALSE(search(3));
  EXPECT_LT(hits, 20);
  EXPECT_LE(questions, 5);
}

TEST_F(DesignHistory, AnswersWithWhatIsIndexedRatherThanHoldUpPolls) {
  const RunningService service(data_);
  Upload(service, "Orders.fmp12.xml", orders_);
  EXPECT_EQ(Service({"designs"}).status, 0);
  service::Database index(data_ + "/varnix-designs.db");
  std::optional<service::Transaction> writing(std::in_place, index);  // the index waits five seconds for that
  const auto begin = std::chrono::steady_clock::now();
  Upload(service, "Orders.fmp12.xml", edited_);
  std::list<RawConnection> requests;
  for (int i = 0; i < 20; ++i) {
    requests.emplace_back(service.url()).Send("GET /operator/designs HTTP/1.1\r\nHost: localhost\r\n\r\n");
  }
  EXPECT_EQ(service.Poll(), R"({"command":null})");
  EXPECT_EQ(service.Get("/operator/designs/2/elements").status, 200) << "it can be read without the index";
  EXPECT_EQ(service.Post("/operator/designs/2/label", R"({"label":"early"})").status, 200);
  for (auto& request : requests) {
    const std::string answer = request.Receive();
    EXPECT_NE(answer.find(R"({"designs":[{"id":1,)"), std::string::npos) << answer;
    EXPECT_EQ(answer.find(R"("id":2,)"), std::string::npos) << answer;
  }
  EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(5)) << "nothing has waited for the index";
  writing.reset();
  EXPECT_NE(Service({"designs"}).output.find("early"), std::string::npos);
}

TEST_F(DesignHistory, PruneRemovesDesignsAndTheirTexts) {
  const RunningService service(data_);
  Upload(service, "Orders.fmp12.xml", orders_);
  Upload(service, "Orders.fmp12.xml", edited_);
  EXPECT_EQ(Service({"search", "shut"}).status, 0);
  for (const char* id : {"1", "2"}) {
    EXPECT_EQ(service.Get("/operator/designs/" + std::string(id) + "/elements").status, 200);
  }
  EXPECT_EQ(Service({"prune", "--keep", "1", "--service", service.url()}).status, 0);
  EXPECT_EQ(service.Get("/operator/designs/1/elements").status, 404) << "though it was at hand";
  EXPECT_EQ(service.Get("/operator/designs/2/elements").status, 200);
  EXPECT_EQ(Service({"search", "status ; \"open\""}).status, 1);
  EXPECT_EQ(Service({"search", "shut"}).status, 0);
  const std::string list = Service({"designs", "--json"}).output;
  EXPECT_EQ(std::count(list.begin(), list.end(), '\n'), 1) << list;
}

// Many copies of one script make the export large.
class LargeDesign : public DesignHistory {
 protected:
  LargeDesign() {
    const std::string begin = "<StepsForScripts";
    const auto catalog = orders_.find(begin);
    const auto script = orders_.find("<Script>", catalog), end = orders_.find("</Script>", script) + 9;
    EXPECT_NE(catalog, std::string::npos);
    EXPECT_NE(script, std::string::npos);
    const auto steps = orders_.find("<Step ", script), stepsEnd = orders_.find("</ObjectList>", steps);
    const std::string copied = orders_.substr(steps, stepsEnd - steps);
    large_ = orders_.substr(0, stepsEnd);
    while (large_.size() < 14'000'000) large_ += copied;
    large_ += orders_.substr(stepsEnd);
    EXPECT_LT(script, end);
  }

  std::string large_;
};

TEST_F(LargeDesign, IsIndexedWhileAPollIsAnswered) {
  const RunningService service(data_);
  Upload(service, "Large.fmp12.xml", large_);
  AwaitLog("indexing Large.fmp12.xml");
  EXPECT_EQ(service.Poll(), R"({"command":null})");
  EXPECT_EQ(Log().find("designs are indexed"), std::string::npos) << "the poll has waited for the index";
  AwaitLog("designs are indexed");
  EXPECT_EQ(Service({"search", "Left: "}).status, 0);
}

TEST_F(LargeDesign, IsIndexedAfterTheServiceWasKilled) {
  {
    RunningService service(data_);
    Upload(service, "Large.fmp12.xml", large_);
    AwaitLog("indexing Large.fmp12.xml");
    service.End(SIGKILL);
  }
  EXPECT_EQ(Log().find("designs are indexed"), std::string::npos);
  const RunningService service(data_);
  AwaitLog("designs are indexed");
  EXPECT_NE(Service({"designs"}).output.find("Orders.fmp12"), std::string::npos);
}

}  // namespace
