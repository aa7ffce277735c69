// The subcommands as people and scripts use them.
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <sstream>
#include <thread>

#include "net/Json.h"
#include "service/RunningService.h"
#include "support/FolderTest.h"
#include "support/Placeholders.h"
#include "support/Process.h"

namespace {

using Arguments = std::vector<std::string>;

class Subcommands : public FolderTest {
 protected:
  Subcommands() {
    setenv("VARNIX_DATA", data_.c_str(), 1);
    for (const char* name : {"VARNIX_KEY", "VARNIX_SERVICE"}) unsetenv(name);
  }
  ~Subcommands() override {
    for (const char* name : {"VARNIX_DATA", "VARNIX_KEY", "VARNIX_SERVICE", "XDG_DATA_HOME"}) unsetenv(name);
  }

  static ProcessResult Run(Arguments arguments, const std::string& input = "") {
    arguments.insert(arguments.begin(), SERVICE);
    return RunProcess(arguments, input);
  }

  // Runs `send` against `service` while a plug-in takes the command and sends `push`, if any, and `completion`.
  ProcessResult Send(const RunningService& service, Arguments arguments, const std::string& push,
                     const std::string& completion, const std::string& input = "") {
    std::thread plugin([&] {
      while ((polled_ = service.Poll()) == R"({"command":null})") std::this_thread::yield();
      if (!push.empty()) service.Post("/api/bridge/push", R"({"licenseKey":"K1",)" + push + '}');
      EXPECT_EQ(service.Complete(JsonGetString(polled_, "id"), completion).status, 200);
    });
    arguments.insert(arguments.end(), {"--service", service.url()});
    const auto result = Run(arguments, input);
    plugin.join();
    return result;
  }

  const std::string data_ = folder_ + "/data";
  std::string polled_;
};

constexpr char kCompleted[] = R"("status":"completed")";

TEST_F(Subcommands, SendPrintsTheResultAndNothingElse) {
  const RunningService service(data_);
  auto result = Send(service, {"send", "GET_CLIPBOARD", "--xml-type", "XMSS"},
                     R"("xmlType":"XMSC","xmlContent":"<fmxmlsnippet>\n\té</fmxmlsnippet>")", kCompleted);
  EXPECT_EQ(result.output, "<fmxmlsnippet>\n\té</fmxmlsnippet>");
  EXPECT_EQ(result.errors, "");
  EXPECT_EQ(result.status, 0);
  EXPECT_EQ(JsonGetString(polled_, "xmlType"), "XMSS");
  EXPECT_EQ(Run({"result", JsonGetString(polled_, "id"), "--service", service.url()}).output, result.output);

  result = Send(service, {"send", "list-files"}, "", R"("status":"failed","error":"ERROR: \u001b[2J\u009b1m files")");
  EXPECT_EQ(result.output, "");
  EXPECT_EQ(result.errors, "varnix-service: ERROR: \\x1B[2J\\x9B1m files\n");
  EXPECT_EQ(result.status, 1);

  const std::string snippet = "<fmxmlsnippet/>\r\n";
  result = Send(service, {"send", "SET_CLIPBOARD", "--xml-type=XMSS", "--content=-"}, "", kCompleted, snippet);
  EXPECT_EQ(result.status, 0);
  EXPECT_EQ(JsonGetString(polled_, "xmlContent"), snippet);
  result =
      Send(service, {"send", "set-clipboard", "--xml-type=XMSS", "--content=-", "--force"}, "", kCompleted, "<a/>");
  EXPECT_EQ(result.status, 0);
  EXPECT_EQ(JsonGetString(polled_, "xmlContent"), "<a/>");
}

TEST_F(Subcommands, ShowWithdrawAndDeleteCommandsAndRecords) {
  const RunningService service(data_);
  setenv("VARNIX_SERVICE", service.url().c_str(), 1);
  EXPECT_EQ(Run({"status"}).output,
            "plug-in: has not asked for commands since the service started\n"
            "commands: 0 (0 queued, 0 delivered)\nreceived: 0 records, 0 bytes\n");
  const std::string queued = Run({"send", "LIST_FILES", "--wait", "0"}).output;
  const auto late = Run({"send", "debug-context", "--wait", "1", "--expires=2h"});
  EXPECT_EQ(late.status, 3);
  EXPECT_EQ(late.output, "");
  EXPECT_NE(late.errors.find("No plug-in has asked"), std::string::npos) << late.errors;
  const std::string id = JsonGetString(service.Poll(), "id");
  EXPECT_EQ(queued, id + '\n');
  EXPECT_TRUE(Run({"status"}).output.starts_with("plug-in 1.6.16: last asked for a command "));
  EXPECT_NE(Run({"status", "--json"}).output.find(R"("connected":true)"), std::string::npos);
  EXPECT_TRUE(Run({"list"}).output.starts_with(id + "  list-files             delivered ")) << Run({"list"}).output;
  EXPECT_TRUE(Run({"show", id}).output.starts_with("list-files: delivered ")) << Run({"show", id}).output;
  EXPECT_EQ(JsonGetString(Run({"show", id, "--json"}).output, "type"), "LIST_FILES");
  EXPECT_EQ(Run({"cancel", id}).errors, "varnix-service: the command is no longer queued\n");
  const std::string other = JsonGetString(service.Get("/operator/commands?state=queued").body, "id");
  EXPECT_EQ(Run({"cancel", other}).status, 0);
  const auto cancelled = Run({"result", other});
  EXPECT_EQ(cancelled.status, 1);
  EXPECT_EQ(cancelled.errors, "varnix-service: the command is cancelled\n");
  EXPECT_EQ(Run({"cancel", id, "--delivered"}).status, 0);
  EXPECT_EQ(Run({"result", id}).errors,
            "varnix-service: the command is cancelled, but FileMaker may still carry it out\n");
  EXPECT_EQ(Run({"cancel", id, "--delivered"}).errors, "varnix-service: the command is finished\n");
  service.Post("/api/bridge/push", R"({"licenseKey":"K1","xmlType":"A\u001bB","xmlContent":"123"})");
  EXPECT_NE(Run({"records", "--kind=push"}).output.find("3 bytes  A\\x1BB\n"), std::string::npos);
  EXPECT_EQ(Run({"records", "1"}).output, "123");
  service.Post("/api/bridge/push", R"({"licenseKey":"K1","xmlType":"FILE_LIST","xmlContent":"A","label":"L"})");
  service.Complete(id);
  EXPECT_EQ(Run({"result", id}).errors, "varnix-service: the command is cancelled, but FileMaker has carried it out\n");
  EXPECT_EQ(Run({"prune", "--older-than=1d"}).output, "deleted: 0 commands, 0 records\n");
}

TEST_F(Subcommands, UseTheKeyInTheDataFolderThatServeMade) {
  umask(0);
  const RunningService service(data_, {});
  const std::string key = service.signInLine().substr(service.signInLine().find("; \"") + 3, 43);
  EXPECT_EQ(service.signInLine(), "To sign in, evaluate in FileMaker:  Varnix.Register ( \"you@example.com\" ; \"" +
                                      key + "\" ; Get ( PersistentID ) ; \"" + service.url() + "\" )");
  for (const char* name : {"", "/key", "/varnix-service.db"}) {
    struct stat status {};
    EXPECT_EQ(stat((data_ + name).c_str(), &status), 0) << name;
    EXPECT_EQ(status.st_mode & 077, 0u) << name;
  }
  EXPECT_EQ(service.Get("/operator/status").status, 401);
  const std::string atService = "--service=" + service.url();
  EXPECT_EQ(Run({"status", atService}).status, 0);
  EXPECT_EQ("To sign in, evaluate in FileMaker:  " + Run({"sign-in", atService + '/'}).output,
            service.signInLine() + '\n');
  EXPECT_EQ(Run({"status", atService, "--key=other"}).errors, "varnix-service: the account key is wrong\n");
  unsetenv("VARNIX_DATA");
  setenv("XDG_DATA_HOME", folder_.c_str(), 1);
  EXPECT_EQ(Run({"status", atService}).status, 4);
  std::filesystem::rename(data_, folder_ + "/varnix-service");
  EXPECT_NE(Run({"status", atService}).errors.find("was removed or replaced"), std::string::npos);

  service.Post("/api/bridge/register",
               R"({"email":"E\n1","licenseKey":")" + key + R"(","machineId":"M1","pluginVersion":"1.6.16"})");
  const std::string log = Contents(data_ + ".log");
  EXPECT_NE(log.find("sign-in: E 1, plug-in 1.6.16\n"), std::string::npos) << log;
  EXPECT_EQ(log.find(key), std::string::npos);
}

TEST_F(Subcommands, RefuseWhatIsWrongAndSayWhatIsRight) {
  const RunningService service(data_);
  std::ofstream(folder_ + "/latin1.xml") << '\xe4';
  std::ofstream(folder_ + "/other.xml") << "<a/>";
  std::filesystem::create_directory(folder_ + "/open");
  chmod((folder_ + "/open").c_str(), 0777);
  std::istringstream lines(Filled(Contents(DATA "/misuse.txt"), {{"{latin1}", folder_ + "/latin1.xml"},
                                                                 {"{other}", folder_ + "/other.xml"},
                                                                 {"{open}", folder_ + "/open"},
                                                                 {"{data}", data_},
                                                                 {"{folder}", folder_},
                                                                 {"{port}", service.port()}}));
  int checked = 0;
  for (std::string line, expected; std::getline(lines, line);) {
    if (line.empty() || line.starts_with("# ")) continue;
    std::getline(lines, expected);
    std::istringstream words(line);
    const auto result = Run({std::istream_iterator<std::string>(words), {}});
    const auto first = std::to_string(result.status) + result.errors.substr(0, result.errors.find('\n'));
    const bool isBeginning = expected.ends_with(" ...");
    EXPECT_EQ(first.substr(0, isBeginning ? 17 : first.npos),
              expected.substr(0, 1) + "varnix-service: " + (isBeginning ? "" : expected.substr(2)))
        << line;
    EXPECT_EQ(result.output, "") << line;
    ++checked;
  }
  EXPECT_EQ(checked, 15);
  EXPECT_EQ(Run({"--version"}).output, "varnix-service 1.6.16\n");
}

}  // namespace
