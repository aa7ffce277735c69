// What holds for the URL layer of every system: a call, ends of transfers, time limits. For one source of each program.
#pragma once

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <future>
#include <memory>
#include <string>

#include "net/Network.h"
#include "net/Transfer.h"
#include "support/LoopbackServer.h"

using namespace std::chrono_literals;

/// Shortened by tests with a silent server. Other threads read them, too.
static std::atomic<std::chrono::milliseconds> g_transferLimit{60s}, g_waitLimit{60s};
std::chrono::milliseconds Network::TransferTimeLimit() { return g_transferLimit; }
std::chrono::milliseconds Network::WaitTimeLimit() { return g_waitLimit; }

namespace {

/// The response of a call that succeeded, otherwise its error.
std::string ResultOf(bool succeeded, const std::string& response, const std::string& error) {
  EXPECT_TRUE(succeeded ? error.empty() : error.starts_with("ERROR: ") && error.size() > 7) << error;
  return succeeded ? response : error;
}

std::string Get(const std::string& url, std::size_t answerLimit = Network::kLongAnswer) {
  std::string response, error;
  const bool succeeded = Network::Get(url, response, error, answerLimit);
  return ResultOf(succeeded, response, error);
}

bool IsError(const std::string& result) { return result.starts_with("ERROR: "); }

struct TransferEnd {
  const char* name;
  std::string answer;
  std::string result = "ERROR: ";  // only its start if it ends with a space
  std::size_t answerLimit = Network::kLongAnswer;
};

const std::string kMany(16 << 20, 'x'), kBinary("a\0\xFFz", 4);
const std::string kGzip("\x1f\x8b\x08\0\0\0\0\0\x02\x03\x4b\xca\x4f\xa9\x04\0\xb2\x0b\xa8\xdb\x04\0\0\0", 24);
const TransferEnd kEndsEverywhere[] = {
    {"zero bytes and no UTF-8", WholeAnswer("200 OK", kBinary), kBinary},
    {"204 without a body", "HTTP/1.1 204 No Content\r\n\r\n", ""},
    {"400", WholeAnswer("400 Bad Request", "body"), "ERROR: HTTP 400 — body"},
    {"HTTP/1.0 without a length", "HTTP/1.0 200 OK\r\n\r\nuntil the end", "until the end"},
    {"closed at once", ""},
    {"16 MB", WholeAnswer("200 OK", kMany), kMany},
    {"gzip of the largest size", WholeAnswer("200 OK\r\nContent-Encoding: gzip", kGzip), "body", 4},
};

template <typename Ends>
void ExpectEnds(const Ends& ends) {
  for (const TransferEnd& end : ends) {
    LoopbackServer server(Sending(end.answer));
    const std::string result = Get(server.Url("/"), end.answerLimit);
    EXPECT_TRUE(end.result.ends_with(' ') ? result.starts_with(end.result) : result == end.result)
        << end.name << ": " << result.substr(0, 100);
  }
}

void ExpectNothingKeptOfAFinishedTransfer() {
  LoopbackServer server(Sending(WholeAnswer("200 OK", "body")));
  std::promise<void> gone;
  std::shared_ptr<void> kept(nullptr, [&](void*) { gone.set_value(); });
  Network::StartTransfer({server.Url(), "GET", {}, ""}, [kept = std::move(kept)](const Network::Outcome&) {});
  EXPECT_EQ(gone.get_future().wait_for(10s), std::future_status::ready);
}

}  // namespace
