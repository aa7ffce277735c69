// Tables of requests and their answers, in files of the folder "data".
#pragma once

#include <string>
#include <vector>

#include "support/Placeholders.h"

struct Row {
  std::string request;  ///< as it is sent
  std::string answer;   ///< the status and, where it matters, the body
};

/// The rows of the file `name`; refused.txt describes its lines.
std::vector<Row> ReadRows(const std::string& name, const Placeholders& placeholders);

/// Sends each row to the service at `url`, each on its own connection, and checks the answer.
void ExpectAnswers(const std::string& url, const std::vector<Row>& rows);
