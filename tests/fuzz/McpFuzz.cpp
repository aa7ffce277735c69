// Whatever lines an AI assistant's client sends, each answer is one JSON-RPC message, and content for the clipboard is
// accepted or refused with a reason.
#include <mutex>
#include <nlohmann/json.hpp>
#include <sstream>
#include <vector>

#include "fuzz/Fuzz.h"
#include "mcp/Session.h"
#include "mcp/Snippet.h"

namespace {

// There is neither a store nor a service.
service::Options Nowhere() {
  service::Options options;
  options.data = "/nonexistent/varnix-fuzz";
  options.url = "http://127.0.0.1:1";
  return options;
}

bool IsMessage(const std::string& text) {
  const auto message = nlohmann::json::parse(text, nullptr, false);
  return text.find('\n') == std::string::npos && message.is_object() && message.value("jsonrpc", "") == "2.0" &&
         message.contains("id") && message.contains("result") != message.contains("error");
}

}  // namespace

void Try(const std::string& input) {
  std::mutex mutex;
  std::vector<std::string> answers;
  std::size_t lines = 0;
  {
    service::mcp::Session session(Nowhere(), [&](const std::string& message) {
      const std::lock_guard lock(mutex);
      answers.push_back(message);
    });
    std::istringstream text(input);
    for (std::string line; std::getline(text, line); ++lines) session.Take(line);
    Check(session.End());
  }
  Check(answers.size() <= lines);
  for (const std::string& answer : answers) Check(IsMessage(answer));
  service::mcp::CheckSnippet("XMSS", input);
}
