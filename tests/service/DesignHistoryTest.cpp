// Designs that the service has received, through its subcommands.
#include <gtest/gtest.h>

#include <algorithm>
#include <csignal>
#include <regex>
#include <thread>

#include "service/RunningService.h"
#include "support/FolderTest.h"
#include "support/Process.h"

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
  }
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
  const struct {
    std::string path;
    int status;
    std::vector<std::string> contains;
  } cases[] = {
      {"?file=orders", 200, {R"({"designs":[{"id":1,"fileUuid":)", R"(},{"id":2,)"}},
      {"?file=Broken.fmp12", 200, {R"("problem":"Broken.fmp12.xml is )"}},
      {"?file=Nothing", 200, {R"({"designs":[]})"}},
      {"/1/changes/2", 200, {R"({"warnings":[],"changes":[{"change":"edited","kind":"script",)", R"(["steps"]}]})"}},
      {"/1/changes/2?details=1",
       200,
       {R"("key":"00000029-0000-4000-8000-000000000000","user":"Ann","account":"Admin","time":"2025-07-02T16:45:56",)",
        R"("details":[{"name":"steps","older":"# prepares\n)", R"("lines":[{"in":"both","text":"# prepares"},)",
        R"({"in":"older","text":"    Set Field [ Orders::Status ; \"Open\" ]"},{"in":"newer",)"}},
      {"/1/changes/1", 200, {R"("changes":[])"}},
      {"/1/references?of=Reset", 200, {R"("place":"step 5 Perform Script","fromKey":)", R"("toName":"Log")"}},
      {"/1/references?broken=1", 200, {"{\"references\":["}},
      {"/1/references?unused=1", 200, {R"({"elements":[{"key":)", R"("name":"Unused",)"}},
      {"/1/references?unused=1&of=Reset", 400, {"unused excludes of and broken"}},
      {"/1/references?broken=yes", 400, {"broken must be a number from 0 to 1"}},
      {"/1/references?of=Nothing", 404, {"the design has no element named Nothing"}},
      {"/search?text=set%20field%20%5B&limit=1", 200, {R"("hits":[{"firstDesign":)", R"("line":)"}},
      {"/search?text=shut", 200, {R"({"total":1,"hits":[{"firstDesign":2,"lastDesign":2,)"}},
      {"/search", 400, {"text is missing"}},
      {"/1/elements",
       200,
       {R"({"elements":[{"key":"00000056-0000-4000-8000-000000000000","kind":"file",)", R"("name":"Orders::Status",)"}},
      {"/2/elements/start",
       200,
       {R"("name":"Start",)", R"("text":"script: Start\n)", R"(Set Field [ Orders::Status ; \"Shut\" ])"}},
      {"/1/elements/Orders::Status", 200, {R"("parent":"Orders",)", R"("text":"field: Orders::Status\n)"}},
      {"/1/elements?kind=script",
       200,
       {R"({"elements":[{"key":"00000029-0000-4000-8000-000000000000","kind":"script",)"
        R"("uuid":"00000029-0000-4000-8000-000000000000","name":"Start","id":1,"parent":"","parentKey":"",)"
        R"("detail":"12 steps","modifications":2,"user":"Ann","account":"Admin",)"
        R"("time":"2025-07-02T16:45:56"},)",
        R"("name":"Reset","id":3,"parent":"Admin","parentKey":"0000002A-0000-4000-8000-000000000000",)"}},
      {"/1/elements?kind=nothing", 200, {R"({"elements":[]})"}},
      {"/4/elements/script:1",
       200,
       {R"({"elements":[{"key":"script:1","kind":"script","uuid":"",)", R"("text":"script: )"}},
      {"/4/references?of=field:129.2", 200, {R"("fromKey":"relationship:1","toKey":"field:129.2")"}},
      {"/5/elements/%3c/script%3e%22/%5c%09", 200, {R"("name":"</script>\"/\\\t")"}},
      {"/5/graph",
       200,
       {R"({"occurrences":[{"key":"0000000A-0000-4000-8000-000000000000","name":"Orders","table":"Orders",)"
        R"("dataSource":"","x":20,"y":10,"width":140,"height":100,"color":"#78ff00","collapsed":true},)",
        R"("name":"Stock","table":"","dataSource":"another file","x":0,"y":0,"width":0,"height":0,"color":null,)",
        R"("relationships":[{"key":"00000027-0000-4000-8000-000000000000","left":"0000000A-0000-4000-8000-000000000000",)"
        R"("right":"0000000C-0000-4000-8000-000000000000","predicates":[{"left":"Orders::Customer ID",)"
        R"("operator":"=","right":"orders CUSTOMER::ID"}]}],"notes":[{"text":"Who buys?","x":83,"y":408,"width":332,"height":125,"color":"#86cd4d"},)",
        R"({"text":"","x":0,"y":0,"width":0,"height":0,"color":"#00ff00"}]})"}},
      {"/4/graph", 200, {R"("key":"relationship:1","left":"tableOccurrence:1065089",)"}},
      {"/1/report",
       200,
       {R"({"counts":[{"kind":"file","plural":"files","count":1},{"kind":"table","plural":"tables","count":2},)",
        R"("plural":"script folders","count":1})", R"("unused":[{"key":)", R"("name":"Unused",)",
        R"("broken":[{"fromKind":"script",)", R"("toName":"<Field Missing>",)", R"("fullAccess":[]})"}},
      {"/9/elements", 404, {"no such design"}},
      {"/x/elements", 404, {"no such design"}},
      {"/3/elements", 409, {"design 3 is "}},
  };
  for (const auto& [path, status, contains] : cases) {
    const auto answer = service.Get("/operator/designs" + path);
    EXPECT_EQ(answer.status, status) << path << ": " << answer.body;
    for (const auto& text : contains) {
      EXPECT_NE(answer.body.find(text), std::string::npos) << path << ": " << answer.body.substr(0, 2000);
    }
  }
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
