// Who may use the console: attempts by pages of other sites, and the answers for its user's browser.
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <algorithm>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <map>
#include <optional>

#include "console/Sessions.h"
#include "net/Json.h"
#include "service/RequestRows.h"
#include "service/RunningService.h"
#include "store/Store.h"
#include "support/FolderTest.h"
#include "support/Process.h"
#include "support/RawConnection.h"

namespace {

using namespace std::chrono_literals;

// What a browser adds to a request of the console's page. The service does not need to listen there.
constexpr char kPage[] = "Host: 127.0.0.1:8765\nSec-Fetch-Site: same-origin";
const httplib::Headers kPageHeaders{{"Host", "127.0.0.1:8765"}, {"Sec-Fetch-Site", "same-origin"}};

class Console : public FolderTest {
 protected:
  static std::string Token(const std::string& address) { return address.substr(address.find("/#token=") + 8); }

  // Opens a session and returns its cookie, "name=secret".
  static std::string Open(const RunningService& service) {
    const std::string message = R"({"token":")" + Token(service.consoleLine()) + R"("})";
    const auto answer = service.Exchange("POST", "/console/session", kPageHeaders, message);
    EXPECT_EQ(answer.body, R"({"ok":true})");
    const std::string cookie = answer.get_header_value("Set-Cookie");
    const auto end = cookie.find(';');
    EXPECT_EQ(cookie.substr(std::min(end, cookie.size())), "; HttpOnly; SameSite=Strict; Path=/; Max-Age=2592000");
    return cookie.substr(0, end);
  }

  std::string NewAddress(const RunningService& service, std::vector<std::string> options = {}) {
    options.insert(options.begin(), {SERVICE, "console", "--service=" + service.url(), "--data=" + data_});
    const auto result = RunProcess(options);
    EXPECT_EQ(result.status, 0) << result.errors;
    return result.output;
  }

  const std::string data_ = folder_ + "/data";
};

TEST_F(Console, IsForItsOwnPageInABrowserWithASession) {
  for (const std::string option : {"--key=Right-1", "--no-key"}) {
    const RunningService service(data_ + option, {option});
    const std::string program = option == "--no-key" ? "201" : "401";
    const std::string cookie = Open(service), list = Contents(DATA "/console.txt");
    const std::string token = [&] {
      const httplib::Headers key{{"Authorization", "Bearer Right-1"}};
      return Token(JsonGetString(service.Exchange("POST", "/operator/console", key, "{}").body, "url"));
    }();
    ExpectAnswers(
        service.url(),
        ReadRows("console.txt", {{"{page}", kPage}, {"{cookie}", cookie}, {"{token}", token}, {"{program}", program}}));
  }
}

TEST_F(Console, StaysOpenAcrossARestartOfTheService) {
  std::string cookie;
  {
    RunningService service(data_, {});
    cookie = Open(service);
    EXPECT_EQ(service.End(SIGKILL), 128 + SIGKILL);
  }
  const RunningService service(data_, {});
  auto headers = kPageHeaders;
  EXPECT_EQ(service.Get("/operator/status", headers).status, 401);
  headers.emplace("Cookie", cookie);
  EXPECT_EQ(service.Get("/operator/status", headers).status, 200);
  const std::string secret = cookie.substr(cookie.find('=') + 1);
  for (const char* name : {"/varnix-service.db", "/varnix-service.db-wal"}) {
    EXPECT_EQ(Contents(data_ + name).find(secret), std::string::npos) << name;
  }
}

TEST_F(Console, SendsItsPageWithHeadersThatKeepOthersOut) {
  const RunningService service(data_, {});
  const std::map<std::string, std::string> types{{".html", "text/html; charset=utf-8"},
                                                 {".js", "text/javascript; charset=utf-8"},
                                                 {".css", "text/css; charset=utf-8"},
                                                 {".svg", "image/svg+xml"}};
  std::map<std::string, std::filesystem::path> files{{"/", WEB "/index.html"}};
  for (const auto& entry : std::filesystem::recursive_directory_iterator(WEB)) {
    const auto& path = entry.path();
    if (types.contains(path.extension())) files["/console/" + path.lexically_relative(WEB).string()] = path;
  }
  EXPECT_GT(files.size(), 3u);
  for (const auto& [path, file] : files) {
    const auto answer = service.Get(path);
    EXPECT_EQ(answer.status, 200) << path;
    EXPECT_EQ(answer.get_header_value("Content-Security-Policy"),
              "default-src 'self'; frame-ancestors 'none'; base-uri 'none'; form-action 'self'");
    EXPECT_EQ(answer.get_header_value("X-Frame-Options"), "DENY");
    EXPECT_EQ(answer.get_header_value("X-Content-Type-Options"), "nosniff");
    EXPECT_EQ(answer.get_header_value("Referrer-Policy"), "no-referrer");
    EXPECT_EQ(answer.get_header_value("Cross-Origin-Opener-Policy"), "same-origin");
    EXPECT_EQ(answer.get_header_value("Cross-Origin-Resource-Policy"), "same-origin");
    EXPECT_EQ(answer.get_header_value("Cache-Control"), "no-store");
    EXPECT_EQ(answer.get_header_value("Content-Type"), types.at(file.extension()));
    EXPECT_EQ(answer.body, Contents(file)) << path;
  }
}

TEST_F(Console, IsOpenedByItsSubcommand) {
  const RunningService service(data_, {});
  EXPECT_TRUE(service.consoleLine().starts_with("Console:  " + service.url() + "/#token=")) << service.consoleLine();
  const std::string address = NewAddress(service);
  EXPECT_TRUE(address.starts_with(service.url() + "/#token=")) << address;
#ifdef __linux__
  const std::string path = std::getenv("PATH");
  std::ofstream(folder_ + "/xdg-open") << "#!/bin/sh\necho \"$@\" > " << folder_ << "/opened\n";
  chmod((folder_ + "/xdg-open").c_str(), 0700);
  setenv("PATH", (folder_ + ':' + path).c_str(), 1);
  const std::string opened = NewAddress(service, {"--open"});
  setenv("PATH", path.c_str(), 1);
  EXPECT_EQ(Contents(folder_ + "/opened"), opened);
#endif
}

TEST_F(Console, EndsItsSessionsAndTokensInTime) {
  std::int64_t now = 1'700'000'000'000;
  const auto clock = [&] { return now; };
  std::optional<service::Store> store(std::in_place, data_, clock);
  std::optional<service::Sessions> sessions(*store);
  const std::string lasting = sessions->NewToken(), brief = sessions->NewToken(1h), late = sessions->NewToken(1h);
  const std::string first = *sessions->Open(brief);
  EXPECT_FALSE(sessions->Open(brief)) << "it is used";
  now += 3'600'000;
  EXPECT_FALSE(sessions->Open(late));
  const std::string second = *sessions->Open(lasting);
  now += service::Sessions::kLength.count() * 1000 - 3'600'000 - 1;
  EXPECT_TRUE(sessions->Has(first));
  now += 1;
  EXPECT_FALSE(sessions->Has(first));
  EXPECT_TRUE(sessions->Has(second));
  for (int i = 0; i < 50; ++i) sessions->Open(sessions->NewToken());
  EXPECT_FALSE(sessions->Has(second)) << "50 newer ones are open";
  const std::string last = *sessions->Open(sessions->NewToken());
  sessions.reset();
  store.reset();
  store.emplace(data_, clock);
  sessions.emplace(*store);
  EXPECT_TRUE(sessions->Has(last));
  EXPECT_FALSE(sessions->Has(second));
}

}  // namespace
