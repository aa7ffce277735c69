#include "service/RequestRows.h"

#include <gtest/gtest.h>

#include <cctype>
#include <sstream>
#include <utility>

#include "support/FolderTest.h"
#include "support/RawConnection.h"

std::vector<Row> ReadRows(const std::string& name, const Placeholders& placeholders) {
  std::istringstream lines(Filled(Contents(DATA "/" + name), placeholders));
  std::vector<Row> rows;
  std::string head, body;
  const char* separator = "";
  for (std::string line; std::getline(lines, line);) {
    if (line.starts_with('|')) {
      body += separator + line.substr(1);
      separator = "\r\n";
    } else if (head.empty() && !line.empty() && line[0] != '#') {
      head = line + " HTTP/1.1\r\n";
    } else if (!line.empty() && std::isdigit(line[0])) {
      if (head.find("Host:") == head.npos) head += "Host: localhost\r\n";
      if (*separator != '\0') head += "Content-Length: " + std::to_string(body.size()) + "\r\n";
      rows.push_back({std::exchange(head, "") + "\r\n" + std::exchange(body, ""), line});
      separator = "";
    } else if (!head.empty()) {
      head += line + "\r\n";
    }
  }
  EXPECT_GT(rows.size(), 8u) << name;
  return rows;
}

void ExpectAnswers(const std::string& url, const std::vector<Row>& rows) {
  for (const auto& row : rows) {
    RawConnection connection(url);
    connection.Send(row.request);
    const std::string answer = connection.Receive();
    EXPECT_TRUE(answer.starts_with("HTTP/1.1 " + row.answer.substr(0, 3))) << row.request << '\n' << answer;
    const std::string body = row.answer.size() > 3 ? "\r\n\r\n" + row.answer.substr(4) : "";
    EXPECT_TRUE(answer.ends_with(body)) << row.request << '\n' << answer;
  }
}
