// varnix-service send.
#include <algorithm>
#include <cctype>
#include <fstream>
#include <iostream>
#include <iterator>

#include "Utf8.h"
#include "Client.h"
#include "CommandTypes.h"
#include "Result.h"
#include "Subcommands.h"

namespace service {
namespace {

// "get-schema" is as good as "GET_SCHEMA".
const CommandType& NamedType(std::string name) {
  std::transform(name.begin(), name.end(), name.begin(),
                 [](unsigned char byte) { return static_cast<char>(byte == '-' ? '_' : std::toupper(byte)); });
  const CommandType* type = FindCommandType(name);
  if (type == nullptr) throw UsageError("TYPE must be one of " + CommandTypeNames());
  return *type;
}

std::string ReadContent(const std::string& file) {
  std::ifstream opened;
  if (file != "-") opened.open(file, std::ios::binary);
  std::istream& input = file == "-" ? std::cin : opened;
  std::string content(std::istreambuf_iterator<char>(input), {});
  if (!input) throw std::runtime_error(file + " cannot be read");
  if (!IsUtf8(content)) throw std::runtime_error(file + " is not UTF-8");
  return content;
}

nlohmann::json Message(const CommandLine& line) {
  const CommandType& type = NamedType(line.operand());
  CommandArguments arguments{line.Option("--file"), line.Option("--xml-type"), std::nullopt};
  if (const auto file = line.Option("--content")) arguments.xmlContent = ReadContent(*file);
  const std::string fault = CheckArguments(type, arguments);
  if (!fault.empty()) throw UsageError(fault);

  nlohmann::json message{{"type", type.name}};
  if (arguments.fileName) message["fileName"] = *arguments.fileName;
  if (arguments.xmlType) message["xmlType"] = *arguments.xmlType;
  if (arguments.xmlContent) message["xmlContent"] = *arguments.xmlContent;
  return message;
}

}  // namespace

ExitStatus RunSend(const CommandLine& line) {
  const auto wait = WaitTime(line);
  const nlohmann::json message = Message(line);
  Client client(line);
  const std::string id = client.Post("/operator/commands", message).at("id");
  if (wait.count() > 0) return AwaitResult(client, id, wait);
  std::cout << id << std::endl;
  return kDone;
}

}  // namespace service
