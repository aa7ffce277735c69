// varnix-service send and cancel.
#include <fstream>
#include <iostream>
#include <iterator>

#include "Subcommands.h"
#include "Utf8.h"
#include "client/Client.h"
#include "client/Result.h"
#include "protocol/CommandTypes.h"
#include "snippet/Snippet.h"

namespace service {
namespace {

std::string ReadContent(const std::string& file) {
  std::ifstream opened;
  if (file != "-") opened.open(file, std::ios::binary);
  std::istream& input = file == "-" ? std::cin : opened;
  std::string content(std::istreambuf_iterator<char>(input), {});
  if (!input) throw std::runtime_error(file + " cannot be read");
  if (!IsUtf8(content)) throw std::runtime_error(file + " is not UTF-8");
  return content;
}

CommandArguments ReadArguments(const CommandType& type, const Options& options) {
  CommandArguments arguments{options.file, options.xmlType, std::nullopt};
  if (options.content) arguments.xmlContent = ReadContent(*options.content);
  const std::string fault = CheckArguments(type, arguments, Reader::kPerson);
  if (!fault.empty()) throw UsageError(fault);
  if (arguments.xmlContent && !solution::IsSnippet(*arguments.xmlContent) && !options.force) {
    throw UsageError("the content is not a FileMaker snippet: it has no <fmxmlsnippet>; --force sends it anyway");
  }
  return arguments;
}

nlohmann::json CommandMessage(const Options& options) {
  const CommandType* type = FindNamedCommandType(options.type);
  if (type == nullptr) throw UsageError("TYPE must be one of " + CommandTypeNames(Reader::kPerson));
  const CommandArguments arguments = ReadArguments(*type, options);
  nlohmann::json message{{"type", type->name}};
  if (arguments.fileName) message["fileName"] = *arguments.fileName;
  if (arguments.xmlType) message["xmlType"] = *arguments.xmlType;
  if (arguments.xmlContent) message["xmlContent"] = *arguments.xmlContent;
  if (options.expires) message["expires"] = std::to_string(*options.expires);
  return message;
}

}  // namespace

ExitStatus RunSend(const Options& options) {
  const nlohmann::json message = CommandMessage(options);
  Client client(options);
  const std::string id = client.Post("/operator/commands", message).at("id");
  if (options.wait > 0) return AwaitResult(client, id, std::chrono::seconds(options.wait));
  std::cout << id << std::endl;
  return kDone;
}

ExitStatus RunCancel(const Options& options) {
  const char* request = options.delivered ? "/forget" : "/cancel";
  Client(options).Post(CommandPath(options.id) + request, nlohmann::json::object());
  return kDone;
}

}  // namespace service
