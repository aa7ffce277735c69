// The subcommands as people and scripts use them.
#include <gtest/gtest.h>

#include <fstream>
#include <thread>

#include "net/Json.h"
#include "service/RunningService.h"
#include "support/FolderTest.h"
#include "support/Process.h"

namespace {

using Arguments = std::vector<std::string>;

class Subcommands : public FolderTest {
 protected:
  ~Subcommands() override {
    unsetenv("VARNIX_KEY");
    unsetenv("VARNIX_SERVICE");
  }

  ProcessResult Run(Arguments arguments, const std::string& input = "") {
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

  std::string polled_;
};

constexpr char kCompleted[] = R"("status":"completed")";

TEST_F(Subcommands, SendPrintsTheResultAndNothingElse) {
  const RunningService service(folder_);
  auto result = Send(service, {"send", "GET_CLIPBOARD", "--xml-type", "XMSS"},
                     R"("xmlType":"XMSC","xmlContent":"<fmxmlsnippet>\n\té</fmxmlsnippet>")", kCompleted);
  EXPECT_EQ(result.output, "<fmxmlsnippet>\n\té</fmxmlsnippet>");
  EXPECT_EQ(result.errors, "");
  EXPECT_EQ(result.status, 0);
  EXPECT_EQ(JsonGetString(polled_, "xmlType"), "XMSS");
  EXPECT_EQ(Run({"result", JsonGetString(polled_, "id"), "--service", service.url()}).output, result.output);

  result = Send(service, {"send", "list-files"}, "", R"("status":"failed","error":"ERROR: no files")");
  EXPECT_EQ(result.output, "");
  EXPECT_EQ(result.errors, "varnix-service: ERROR: no files\n");
  EXPECT_EQ(result.status, 1);

  result = Send(service, {"send", "SET_CLIPBOARD", "--xml-type", "XMSS", "--content", "-"}, "", kCompleted, "<a/>\r\n");
  EXPECT_EQ(result.status, 0);
  EXPECT_EQ(JsonGetString(polled_, "xmlContent"), "<a/>\r\n");
}

TEST_F(Subcommands, TellWhenACommandIsNotFinishedAndTakeAddressAndKeyFromTheEnvironment) {
  setenv("VARNIX_KEY", "K1", 1);
  const RunningService service(folder_);
  setenv("VARNIX_SERVICE", service.url().c_str(), 1);
  const std::string queued = Run({"send", "LIST_FILES", "--wait", "0"}).output;
  const auto late = Run({"send", "LIST_FILES", "--wait", "1"});
  EXPECT_EQ(late.status, 3);
  EXPECT_EQ(late.output, "");
  EXPECT_NE(late.errors.find("No plug-in has asked"), std::string::npos) << late.errors;
  const std::string id = JsonGetString(service.Poll(), "id");
  EXPECT_EQ(queued, id + '\n');
  const auto list = Run({"list"});
  EXPECT_TRUE(list.output.starts_with(id + "  LIST_FILES             delivered ")) << list.output;
  EXPECT_TRUE(Run({"show", id}).output.starts_with("id: " + id + "\ntype: LIST_FILES\nqueuedAt: 2"));
  setenv("VARNIX_KEY", "K2", 1);
  EXPECT_EQ(Run({"list"}).errors, "varnix-service: the account key is wrong\n");
}

TEST_F(Subcommands, RefuseWhatIsWrongAndSayWhatIsRight) {
  const RunningService service(folder_);
  std::ofstream(folder_ + "/latin1.xml") << "\xe4";
  const struct {
    Arguments arguments;
    int status;
    std::string errors;
  } cases[] = {
      {{"send", "LIST_FILES", "--wait", "1s"}, 2, "--wait takes a whole number from 0 to 86400"},
      {{"send", "SET_CLIPBOARD", "--content", folder_ + "/latin1.xml"}, 1, folder_ + "/latin1.xml is not UTF-8"},
      {{"list", "--service", "http://127.0.0.1:1"}, 4, "no answer from http://127.0.0.1:1 (Connection)"},
      {{"serve", "--listen", "0.0.0.0:0"}, 2, "to be reached from other machines, the service needs a key"},
      {{"serve", "--listen", "127.0.0.1:0", "--data", folder_}, 1, folder_ + " is in use by another service"},
      {{"serve", "--key", "a/b"},
       2,
       "a key is made of letters, digits and - . _ ~, because it is sent in addresses as it stands"},
  };
  for (const auto& [arguments, status, errors] : cases) {
    const auto result = Run(arguments);
    EXPECT_EQ(result.status, status) << errors;
    EXPECT_EQ(result.output, "");
    EXPECT_EQ(result.errors.substr(0, result.errors.find('\n')), "varnix-service: " + errors);
  }
}

}  // namespace
