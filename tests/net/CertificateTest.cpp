// Whom HTTPS is spoken with. The server is OpenSSL's; its certificate stands in for those of the system where a case
// says that it is trusted.
#include <dlfcn.h>
#include <gtest/gtest.h>
#include <openssl/ssl.h>

#include <cstdio>
#include <cstdlib>
#include <string>

#include "net/Network.h"
#include "tests/support/FolderTest.h"

namespace {

std::string g_trusted;  // file of a certificate to trust instead of the system's

template <class Owner>
int LoadTrusted(const char* function, Owner* owner, const char* systems) {
  const auto load = reinterpret_cast<int (*)(Owner*, const char*)>(dlsym(RTLD_NEXT, function));
  return load(owner, g_trusted.empty() ? systems : g_trusted.c_str());
}

}  // namespace

// libcurl loads the system's certificates by one of these, depending on its age.
#pragma GCC visibility push(default)
extern "C" int X509_STORE_load_file(X509_STORE* store, const char* file) {
  return LoadTrusted("X509_STORE_load_file", store, file);
}
extern "C" int SSL_CTX_load_verify_file(SSL_CTX* context, const char* file) {
  return LoadTrusted("SSL_CTX_load_verify_file", context, file);
}
#pragma GCC visibility pop

namespace {

class CertificateTest : public FolderTest {
 protected:
  CertificateTest() {
    const std::string command =
        "openssl req -x509 -nodes -newkey ec -pkeyopt ec_paramgen_curve:prime256v1 -subj /CN=x "
        "-addext subjectAltName=IP:127.0.0.1 -keyout " +
        folder_ + "/key -out " + folder_ + "/certificate >/dev/null 2>&1";
    EXPECT_EQ(std::system(command.c_str()), 0) << command;
  }

  /// Asks a server that has the certificate, under the name `host`. "" when it is taken, or the error.
  std::string Get(const std::string& host) const {
    const std::string command = "exec timeout 20 openssl s_server -accept 127.0.0.1:0 -naccept 1 -www -key " + folder_ +
                                "/key -cert " + folder_ + "/certificate 2>/dev/null";
    FILE* server = popen(command.c_str(), "re");
    char line[256] = "";
    int port = 0;
    while (port == 0 && fgets(line, sizeof line, server) != nullptr) std::sscanf(line, "ACCEPT 127.0.0.1:%d", &port);
    std::string response, error;
    const bool succeeded = Network::Get("https://" + host + ":" + std::to_string(port) + "/", response, error);
    EXPECT_EQ(succeeded, !response.empty());
    while (fgets(line, sizeof line, server) != nullptr) {
    }
    pclose(server);
    return error;
  }
};

TEST_F(CertificateTest, ATrustedOneIsTakenForItsNameOnly) {
  g_trusted = folder_ + "/certificate";
  EXPECT_EQ(Get("127.0.0.1"), "");
  EXPECT_TRUE(Get("localhost").starts_with("ERROR: "));
}

TEST_F(CertificateTest, AnUnknownOneIsRefused) { EXPECT_TRUE(Get("127.0.0.1").starts_with("ERROR: ")); }

}  // namespace
