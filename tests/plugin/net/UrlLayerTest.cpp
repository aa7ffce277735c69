// The HTTP calls on libcurl, against well-behaved and misbehaving servers.
#include <curl/curl.h>
#include <dlfcn.h>
#include <sys/eventfd.h>

#include <cstdio>
#include <fstream>
#include <thread>

#include "net/Network_linux.h"
#include "plugin/net/AnyUrlLayer.h"
#include "support/Entries.h"
#include "support/FolderTest.h"
#include "support/Process.h"
#include "support/Rows.h"

namespace {

std::string g_trusted;                 // file of a certificate to trust instead of the system's
std::atomic<bool> g_hasMemory = true;  // for libcurl to start
std::atomic<int> g_turns;              // of the transfer thread, which reads its eventfd in each

template <class Function>
Function* Original(Function*, const char* name) {
  return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}

int LoadTrusted(const char* function, void* owner, const char* systems) {
  const auto load = reinterpret_cast<int (*)(void*, const char*)>(dlsym(RTLD_NEXT, function));
  return load(owner, g_trusted.empty() ? systems : g_trusted.c_str());
}

}  // namespace

// libcurl loads the system's certificates with one of these, depending on its version.
#pragma GCC visibility push(default)
extern "C" int X509_STORE_load_file(void* store, const char* file) {
  return LoadTrusted("X509_STORE_load_file", store, file);
}
extern "C" int SSL_CTX_load_verify_file(void* context, const char* file) {
  return LoadTrusted("SSL_CTX_load_verify_file", context, file);
}
extern "C" CURLM* curl_multi_init() { return g_hasMemory ? Original(curl_multi_init, "curl_multi_init")() : nullptr; }
extern "C" int eventfd_read(int descriptor, eventfd_t* value) {
  ++g_turns;
  return Original(eventfd_read, "eventfd_read")(descriptor, value);
}
#pragma GCC visibility pop

namespace {

std::string Post(const std::string& url, const std::string& body) {
  std::string response, error;
  const bool succeeded = Network::Post(url, body, response, error);
  return ResultOf(succeeded, response, error);
}

// First, since libcurl starts only once.
TEST(UrlLayerStart, FailsWithoutSpinningWhileThereIsNoMemory) {
  LoopbackServer server(Sending(WholeAnswer("200 OK", "body")));
  g_hasMemory = false;
  for (int i = 0; i < 20; ++i) EXPECT_EQ(Get(server.Url()), "ERROR: Out of memory");
  EXPECT_LT(g_turns, 100);
  g_hasMemory = true;
  EXPECT_EQ(Get(server.Url()), "body");
}

TEST(UrlLayer, ReportsEveryEndOfATransfer) {
  const std::string twice = "ERROR: The answer is compressed more than once.";
  const TransferEnd ends[] = {
      {"shorter than its length", "HTTP/1.1 200 OK\r\nContent-Length: 9\r\n\r\nbody"},
      {"not HTTP", "220 mail.example ESMTP\r\n"},
      {"gzip, too large when decoded", WholeAnswer("200 OK\r\nContent-Encoding: gzip", kGzip),
       "ERROR: The answer is too large: more than 0 MB.", 3},
      {"gzip in chunks",
       "HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\nContent-Encoding: gzip\r\n\r\n18\r\n" + kGzip +
           "\r\n0\r\n\r\n",
       "body"},
      {"gzip of gzip", WholeAnswer("200 OK\r\nContent-encoding: gzip, identity ,GZIP", kGzip), twice},
      {"gzip of gzip, in two headers",
       WholeAnswer("200 OK\r\nTransfer-Encoding: gzip\r\nContent-Encoding: gzip", kGzip),
       "ERROR: "},  // newer versions of libcurl refuse the first already
      {"redirect to a file", WholeAnswer("302 Found\r\nLocation: file:///etc/passwd", "")},
      {"redirect to FTP", WholeAnswer("302 Found\r\nLocation: ftp://127.0.0.1/", ""), "ERROR: Protocol \"ftp\" "},
      {"redirect to no URL", WholeAnswer("302 Found\r\nLocation: http://[", ""),
       "ERROR: Refused a redirect to an invalid URL."},
  };
  Get(LoopbackServer(Sending("")).Url());  // opens what the URL layer keeps open
  const auto descriptors = EntriesOf("/proc/self/fd"), threads = EntriesOf("/proc/self/task");
  ExpectEnds(kEndsEverywhere);
  ExpectEnds(ends);
  EXPECT_EQ(EntriesOf("/proc/self/fd"), descriptors);
  EXPECT_EQ(EntriesOf("/proc/self/task"), threads);
}

TEST(UrlLayer, FailsWithoutAServer) {
  const std::string closed = LoopbackServer(Sending("")).Url();
  for (const std::string& url : {closed, std::string("file:///etc/passwd"), closed.substr(7), std::string("http://")}) {
    EXPECT_TRUE(IsError(Get(url))) << url;
  }
}

TEST(UrlLayer, RefusesTextsThatAreNotUrls) {
  ExpectRows(DATA "/urls.txt", [](const auto& text) { return Network::IsURL(text) ? "URL" : "refused"; });
}

TEST(UrlLayer, LimitsHowLongASilentOrDrippingServerTakes) {
  for (const auto behave : {NeverAnswer, Drip}) {
    LoopbackServer server(behave);
    g_turns = 0;
    g_waitLimit = 50ms;
    EXPECT_EQ(Get(server.Url()), "ERROR: Request timed out.");  // and ends later, without the caller's texts
    g_waitLimit = 60s;
    g_transferLimit = 50ms;
    EXPECT_TRUE(IsError(Get(server.Url())));
    g_transferLimit = 60s;
    EXPECT_TRUE(behave == Drip || g_turns < 50) << "the transfer thread spins";
  }
}

TEST(UrlLayer, KeepsNothingOfAFinishedTransfer) { ExpectNothingKeptOfAFinishedTransfer(); }

TEST(UrlLayer, SendsARequestVerbatim) {
  LoopbackServer server(Answering([](const std::string&) { return CannedAnswer{}; }));
  Post(server.Url("/large"), std::string(2 << 20, 'x'));
  EXPECT_EQ(server.Requests().at(0).find("Expect:"), std::string::npos) << "many servers never answer it";
  Post(server.Url("/a/../b?key=a%20b#part"), std::string("{\"a\":\0}", 7));
  std::string request = server.Requests().at(1);
  const std::size_t encoding = request.find("Accept-Encoding: ");
  request.erase(encoding, request.find("\r\n", encoding) + 2 - encoding);  // depends on libcurl's build
  EXPECT_EQ(request, "POST /a/../b?key=a%20b HTTP/1.1\r\nHost: " + server.Url().substr(7) +
                         "\r\nContent-Type: application/json\r\nAccept: application/json\r\nContent-Length: 7\r\n\r\n" +
                         std::string("{\"a\":\0}", 7));
}

TEST(UrlLayer, FollowsTwentyRedirectsAsABrowserDoes) {
  for (const auto& [status, line, body] : {std::tuple{302, "GET /to", ""}, {308, "POST /to", "body"}}) {
    for (const int redirects : {20, 21}) {
      int left = redirects;
      LoopbackServer server(Answering([&, status = status](const std::string&) {
        if (left-- == 0) return CannedAnswer{200, "arrived", ""};
        return CannedAnswer{status, "", "Content-Encoding: gzip\r\nLocation: /to\r\n"};
      }));
      const std::string result = Post(server.Url("/from"), "body");
      EXPECT_TRUE(redirects == 20 ? result == "arrived" : IsError(result)) << result;
      EXPECT_EQ(RequestLine(server.Requests().at(20)), line);
      EXPECT_EQ(RequestBody(server.Requests().at(20)), body);
    }
  }
}

TEST(UrlLayer, SendsABodyToNoOtherOrigin) {
  LoopbackServer other(Answering([](const std::string&) { return CannedAnswer{200, "arrived", ""}; }));
  for (const int status : {301, 302, 303, 305, 307, 308}) {
    for (const bool moves : {false, true}) {
      std::promise<std::string> origin;
      LoopbackServer server(Answering([&](const std::string& request) {
        if (!request.starts_with("POST /from")) return CannedAnswer{200, "arrived", ""};
        return CannedAnswer{status, "", "Location: " + (moves ? other.Url() : origin.get_future().get()) + "/a b\r\n"};
      }));
      origin.set_value(server.Url());
      EXPECT_EQ(Post(server.Url("/from"), "body"),
                moves && status > 303 ? "ERROR: Refused a redirect that would send the data meant for " + server.Url() +
                                            " to " + other.Url() + "."
                                      : "arrived")
          << status;
    }
  }
  for (const auto& request : other.Requests()) EXPECT_EQ(RequestLine(request), "GET /a%20b");
}

TEST(UrlLayer, KeepsCookiesAndCredentialsForTheirHost) {
  LoopbackServer other(Answering([](const std::string&) { return CannedAnswer{}; }));
  LoopbackServer first(Answering([&](const std::string&) {
    return CannedAnswer{
        302, "",
        "Set-Cookie: secret=1; Path=/\r\nLocation: http://localhost:" + std::to_string(other.port()) + "/\r\n"};
  }));
  for (int i = 0; i < 2; ++i) Get("http://user:password@" + first.Url("/?key=secret").substr(7));
  ASSERT_EQ(other.Requests().size(), 2u);
  for (const char* header : {"Authorization: Basic", "Cookie: secret=1", "Referer"}) {
    EXPECT_EQ(first.Requests().at(1).find(header) != std::string::npos, header != std::string_view("Referer"));
    EXPECT_EQ(other.Requests()[1].find(header), std::string::npos) << header;
  }
}

using Certificates = FolderTest;

TEST_F(Certificates, MustBeTrustedForTheHostAndStayInUse) {
  LoopbackServer plain(Sending(WholeAnswer("200 OK", "not encrypted")));
  std::ofstream(folder_ + "/answer") << "HTTP/1.0 200 OK\r\n\r\nbody";
  std::ofstream(folder_ + "/redirect") << "HTTP/1.0 302 Found\r\nLocation: " << plain.Url() << "\r\n\r\n";
  const std::string openssl = "cd " + folder_ + " && exec timeout 20 openssl ";
  const std::string make = "req -x509 -nodes -newkey ec -pkeyopt ec_paramgen_curve:prime256v1 -subj /CN=x ";
  const std::string files = "-addext subjectAltName=IP:127.0.0.1 -keyout key -out certificate";
  ASSERT_EQ(RunProcess({"sh", "-c", openssl + make + files}).status, 0);
  const std::string serve = openssl + "s_server -accept 127.0.0.1:0 -naccept 1 -HTTP -key key -cert certificate 2>&1";
  const auto get = [&](const std::string& host, const std::string& path = "/answer") {
    ChildProcess server({"sh", "-c", serve});
    int port = 0;
    while (std::sscanf(server.ReadLine().c_str(), "ACCEPT 127.0.0.1:%d", &port) != 1) continue;
    return Get("https://" + host + ":" + std::to_string(port) + path);
  };
  EXPECT_TRUE(IsError(get("127.0.0.1")));
  g_trusted = folder_ + "/certificate";
  EXPECT_EQ(get("127.0.0.1"), "body");
  EXPECT_EQ(get("127.0.0.1", "/redirect"), "ERROR: Refused a redirect from https to " + plain.Url() + ".");
  EXPECT_TRUE(plain.Requests().empty());
  EXPECT_TRUE(IsError(get("localhost")));
  g_trusted.clear();
}

TEST(UrlLayer, LeavesConnectionsToNoChildProcess) {
  LoopbackServer server(NeverAnswer);
  g_waitLimit = 1ms;
  Get(server.Url());
  g_waitLimit = 60s;
  server.WaitForRequests(1);
  // The server's own sockets are close-on-exec.
  EXPECT_EQ(RunProcess({"sh", "-c", "ls -l /proc/self/fd | grep -c socket:"}).output, "0\n");
}

// Last, since it ends all transfers.
TEST(UrlLayerEnd, CancelsTransfersAndRefusesNewOnes) {
  LoopbackServer server(NeverAnswer);
  std::string result;
  std::thread caller([&] { result = Get(server.Url()); });
  server.WaitForRequests(1);
  StopTransfers();
  caller.join();
  EXPECT_EQ(result, "ERROR: cancelled");
  EXPECT_EQ(Get(server.Url()), "ERROR: cancelled");
}

}  // namespace
