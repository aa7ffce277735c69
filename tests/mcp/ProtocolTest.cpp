// The answers to lines that no tool handles.
#include <gtest/gtest.h>
#include <unistd.h>

#include <array>
#include <csignal>
#include <string>
#include <thread>
#include <vector>

#include "mcp/Lines.h"
#include "mcp/Methods.h"
#include "mcp/Session.h"

namespace {

using nlohmann::json;
using service::mcp::LineReader;
using service::mcp::LineWriter;

class Mcp : public ::testing::Test {
 protected:
  /// The answers to a line that is answered at once.
  std::vector<std::string> Take(const std::string& line) {
    answers_.clear();
    session_.Take(line);
    return answers_;
  }

  json Answer(const std::string& line) {
    const auto answers = Take(line);
    EXPECT_EQ(answers.size(), 1U) << line.substr(0, 200);
    return answers.empty() ? json() : json::parse(answers.front());
  }

  service::Options options_;
  std::vector<std::string> answers_;
  service::mcp::Session session_{options_, [this](const std::string& line) { answers_.push_back(line); }};
};

constexpr char kInitialize[] =
    R"({"jsonrpc":"2.0","id":1,"method":"initialize","params":{"protocolVersion":"2025-11-25","capabilities":{},)"
    R"("clientInfo":{"name":"test","version":"1"}}})";

std::string Modern(const std::string& method, const std::string& meta) {
  return R"({"jsonrpc":"2.0","id":"m","method":")" + method +
         R"(","params":{"_meta":{"io.modelcontextprotocol/protocolVersion":)" + meta + "}}}";
}

const std::string kNow = R"("2026-07-28","io.modelcontextprotocol/clientCapabilities":{})";

struct Row {
  std::string line;
  int code;  // of the error; 0: a result
  std::string id;
};

TEST_F(Mcp, AnswersInvalidRequestsWithAnError) {
  const std::string tooDeep(100, '[');
  const Row rows[] = {
      {"nonsense", -32700, "null"},
      {"{\"jsonrpc\":\"2.0\",\"id\":1,\"method\":\"p\xFFing\"}", -32700, "null"},
      {R"({"jsonrpc":"2.0","id":1,"method":"\ud800"})", -32700, "null"},
      {R"({"jsonrpc":"2.0","id":1,"method":"ping")", -32700, "null"},
      {R"({"jsonrpc":"2.0","id":1,"method":"ping","params":{"a":)" + tooDeep, -32600, "null"},
      {"17", -32600, "null"},
      {R"([{"jsonrpc":"2.0","id":1,"method":"ping"}])", -32600, "null"},
      {"{}", -32600, "null"},
      {R"({"jsonrpc":"2.0","id":null,"method":"ping"})", -32600, "null"},
      {R"({"jsonrpc":"2.0","id":1.5,"method":"ping"})", -32600, "null"},
      {R"({"jsonrpc":"2.0","id":{},"method":"ping"})", -32600, "null"},
      {R"({"jsonrpc":"1.0","id":1,"method":"ping"})", -32600, "1"},
      {R"({"id":1,"method":"ping"})", -32600, "1"},
      {R"({"jsonrpc":"2.0","id":1,"method":7})", -32600, "1"},
      {R"({"jsonrpc":"2.0","id":1})", -32600, "1"},
      {R"({"jsonrpc":"2.0","id":1,"method":"ping","params":[]})", -32602, "1"},
      {R"({"jsonrpc":"2.0","id":1,"method":"ping","params":{"_meta":3}})", -32602, "1"},
      {R"({"jsonrpc":"2.0","id":1,"method":"initialize"})", -32602, "1"},
      {R"({"jsonrpc":"2.0","id":"é","method":"tools/list"})", -32600, R"("é")"},
      {R"({"jsonrpc":"2.0","id":1,"method":"prompts/list"})", -32601, "1"},
      {R"({"jsonrpc":"2.0","id":"1","method":"ping"})", 0, R"("1")"},
      {R"({"jsonrpc":"2.0","id":-9007199254740993,"method":"ping"})", 0, "-9007199254740993"},
      {R"({"jsonrpc":"2.0","id":1,"method":"server/discover"})", -32602, "1"},
      {Modern("server/discover", "\"1900-01-01\""), -32022, "\"m\""},
      {Modern("server/discover", "\"2026-07-28\""), -32602, "\"m\""},
      {Modern("server/discover", "7"), -32602, "\"m\""},
      {Modern("ping", kNow), -32601, "\"m\""},
      {Modern("initialize", kNow), -32601, "\"m\""},
      {Modern("server/discover", kNow), 0, "\"m\""},
      {Modern("tools/list", kNow), 0, "\"m\""},
  };
  for (const Row& row : rows) {
    const json answer = Answer(row.line);
    EXPECT_EQ(answer.value("jsonrpc", ""), "2.0");
    EXPECT_EQ(answer.at("id").dump(), row.id) << row.line;
    EXPECT_EQ(answer.contains("error") ? answer["error"].at("code").get<int>() : 0, row.code) << answer;
    EXPECT_NE(answer.contains("error"), answer.contains("result")) << answer;
  }
}

TEST_F(Mcp, AnswersNoNotificationAndNoResponse) {
  for (const char* line :
       {R"({"jsonrpc":"2.0","method":"notifications/initialized"})", R"({"jsonrpc":"2.0","method":"ping"})",
        R"({"jsonrpc":"2.0","method":"x","params":[]})",
        R"({"jsonrpc":"2.0","method":"notifications/cancelled","params":{"requestId":99}})",
        R"({"jsonrpc":"2.0","method":"notifications/cancelled"})", R"({"method":"x"})",
        R"({"jsonrpc":"2.0","id":1,"result":{}})", R"({"jsonrpc":"2.0","id":1,"error":{"code":1,"message":"m"}})"}) {
    EXPECT_TRUE(Take(line).empty()) << line;
  }
}

TEST_F(Mcp, GreetsInTheRevisionThatTheClientKnows) {
  for (const auto& [asked, given] : {std::pair{"2025-06-18", "2025-06-18"},
                                     {"2025-11-25", "2025-11-25"},
                                     {"2024-11-05", "2025-11-25"},
                                     {"2026-07-28", "2025-11-25"},
                                     {"x", "2025-11-25"}}) {
    std::string line = kInitialize;
    line.replace(line.find("2025-11-25"), 10, asked);
    const json result = Answer(line).at("result");
    EXPECT_EQ(result.at("protocolVersion"), given);
    EXPECT_EQ(result.at("serverInfo").at("name"), "varnix");
    EXPECT_FALSE(result.contains("resultType")) << "belongs to the revision without sessions";
  }
  EXPECT_TRUE(Answer(R"({"jsonrpc":"2.0","id":2,"method":"tools/list"})").contains("result"));
}

TEST_F(Mcp, DescribesItselfToClientsWithoutSessions) {
  const json result = Answer(Modern("server/discover", kNow)).at("result");
  EXPECT_EQ(result.at("supportedVersions"), json({"2026-07-28"}));
  EXPECT_EQ(result.at("resultType"), "complete");
  EXPECT_EQ(result.at("cacheScope"), "public");
  EXPECT_GT(result.at("ttlMs"), 0);
  EXPECT_EQ(result.at("_meta").at("io.modelcontextprotocol/serverInfo").at("name"), "varnix");
  const json error = Answer(Modern("tools/list", "\"2025-11-25\"")).at("error");
  EXPECT_EQ(error.at("data").dump(), R"({"requested":"2025-11-25","supported":["2026-07-28"]})");
}

class Pipe {
 public:
  Pipe() { EXPECT_EQ(pipe(ends_.data()), 0); }
  ~Pipe() { Close(0), Close(1); }
  int operator[](std::size_t end) const { return ends_[end]; }
  void Close(std::size_t end) {
    if (ends_[end] >= 0) close(std::exchange(ends_[end], -1));
  }

 private:
  std::array<int, 2> ends_{-1, -1};
};

TEST(McpLines, AreReadUpToTheLongestPermitted) {
  Pipe pipe;
  std::thread client([&pipe] {
    LineWriter writer(pipe[1]);
    for (const std::string& line : {std::string("a"), std::string(), std::string(200'000, 'b'),
                                    std::string(200'001, 'c'), std::string(900'000, 'd'), std::string("e\r")}) {
      writer.Write(line);
    }
    EXPECT_EQ(write(pipe[1], "end", 3), 3);
    pipe.Close(1);
  });
  LineReader reader(pipe[0], 200'000);
  std::string seen;
  std::string_view line;
  for (auto outcome = reader.Next(line); outcome != LineReader::Outcome::kEnd; outcome = reader.Next(line)) {
    seen += outcome == LineReader::Outcome::kTooLong ? "long"
                                                     : std::to_string(line.size()) + std::string(line.substr(0, 3));
    seen += ' ';
  }
  client.join();
  EXPECT_EQ(seen, "1a 0 200000bbb long long 2e\r 3end ");
}

TEST(McpLines, GiveUpWhenNobodyReads) {
  Pipe pipe;
  LineWriter stuck(pipe[1]);
  std::thread writing([&stuck] { stuck.Write(std::string(1 << 20, 'x')); });
  stuck.Close();
  writing.join();  // a pipe holds less than that
  std::signal(SIGPIPE, SIG_IGN);
  LineWriter gone(pipe[1]);
  pipe.Close(0);
  gone.Write("x");
  EXPECT_TRUE(gone.IsClosed());
  std::signal(SIGPIPE, SIG_DFL);
}

}  // namespace
