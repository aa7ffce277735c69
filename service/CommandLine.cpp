#include "CommandLine.h"

#include <algorithm>
#include <charconv>
#include <cstdlib>
#include <vector>

#include "CommandTypes.h"
#include "Subcommands.h"

namespace service {
namespace {

struct Option {
  const char* name;
  const char* value;
  const char* help;
};

struct Subcommand {
  const char* name;
  const char* operand;  // null when it takes none
  const char* help;
  ExitStatus (*run)(const CommandLine&);
  std::vector<Option> options;
};

constexpr Option kService = {"--service", "URL", "where the service is ($VARNIX_SERVICE, else http://127.0.0.1:8765)"};
constexpr Option kWait = {"--wait", "SECONDS", "wait that long (60)"};
constexpr Option kKey = {"--key", "KEY", "the service's account key ($VARNIX_KEY)"};

const std::vector<Subcommand>& Subcommands() {
  static const std::vector<Subcommand> subcommands = {
      {"serve",
       nullptr,
       "run the service until it is told to end; the first line printed is its address",
       RunServe,
       {{"--listen", "ADDR:PORT", "listen there (127.0.0.1:8765); port 0: any that is free"},
        {"--data", "DIR", "keep everything there ($XDG_DATA_HOME or ~/.local/share, varnix-service)"},
        {"--key", "KEY", "accept only this account key ($VARNIX_KEY); needed beyond this machine"},
        {"--latest-version", "V", "plug-in version to report as current"},
        {"--max-body", "MB", "refuse larger requests (256)"}}},
      {"send",
       "TYPE",
       "have the plug-in carry out a command, wait, print the result",
       RunSend,
       {{"--file", "NAME", "FileMaker file that the command is about"},
        {"--xml-type", "KIND", "kind of FileMaker XML, such as XMSS"},
        {"--content", "FILE|-", "XML for the clipboard, from a file or the standard input"},
        {"--wait", "SECONDS", "wait that long (60); 0: print the command's ID instead of its result"},
        kService,
        kKey}},
      {"result", "ID", "wait for a command and print its result", RunResult, {kWait, kService, kKey}},
      {"list", nullptr, "show the latest commands and their states", RunList, {kService, kKey}},
      {"show", "ID", "show everything about one command but its result", RunShow, {kService, kKey}},
  };
  return subcommands;
}

template <class Named>
const Named* FindNamed(const std::vector<Named>& all, const std::string& name) {
  const auto found = std::find_if(all.begin(), all.end(), [&](const Named& named) { return name == named.name; });
  return found == all.end() ? nullptr : &*found;
}

}  // namespace

CommandLine::CommandLine(int argc, char** argv) {
  const std::vector<std::string> words(argv + std::min(argc, 1), argv + argc);
  const auto isHelp = [](const std::string& word) { return word == "--help" || word == "-h"; };
  if (std::any_of(words.begin(), words.end(), isHelp)) return;
  if (words.empty()) throw UsageError("a subcommand is missing");
  const Subcommand* subcommand = FindNamed(Subcommands(), words[0]);
  if (subcommand == nullptr) throw UsageError("unknown subcommand " + words[0]);

  bool hasOperand = false;
  for (std::size_t i = 1; i < words.size(); ++i) {
    if (subcommand->operand != nullptr && !hasOperand && words[i].rfind("--", 0) != 0) {
      operand_ = words[i];
      hasOperand = true;
      continue;
    }
    const auto* option = FindNamed(subcommand->options, words[i]);
    if (option == nullptr) throw UsageError(words[0] + " does not take " + words[i]);
    if (++i == words.size()) throw UsageError(std::string(option->name) + " needs " + option->value);
    options_[option->name] = words[i];
  }
  if (subcommand->operand != nullptr && !hasOperand) throw UsageError(words[0] + " needs " + subcommand->operand);
  run_ = subcommand->run;
}

std::optional<std::string> CommandLine::Option(const char* name, const char* variable) const {
  const auto found = options_.find(name);
  if (found != options_.end()) return found->second;
  const char* value = variable == nullptr ? nullptr : std::getenv(variable);
  return value == nullptr || *value == 0 ? std::nullopt : std::optional<std::string>(value);
}

long CommandLine::Number(const char* name, long lowest, long highest, long otherwise) const {
  const auto text = Option(name);
  if (!text) return otherwise;
  long value = 0;
  const auto [end, error] = std::from_chars(text->data(), text->data() + text->size(), value);
  if (error != std::errc() || end != text->data() + text->size() || value < lowest || value > highest) {
    throw UsageError(std::string(name) + " takes a whole number from " + std::to_string(lowest) + " to " +
                     std::to_string(highest));
  }
  return value;
}

std::string Usage() {
  std::string text = "usage: varnix-service SUBCOMMAND [option value]...\nA bridge service on this machine.\n";
  for (const auto& subcommand : Subcommands()) {
    const std::string operand = subcommand.operand == nullptr ? "" : std::string(" ") + subcommand.operand;
    text += '\n' + (subcommand.name + operand) + ": " + subcommand.help + '\n';
    for (const auto& option : subcommand.options) {
      std::string left = std::string("  ") + option.name + ' ' + option.value;
      left.resize(std::max<std::size_t>(left.size() + 1, 23), ' ');
      text += left + option.help + '\n';
    }
  }
  return text + "\nTYPE is one of " + CommandTypeNames() +
         ".\nExit status: 0, 1 when the command failed or the service could not start, 2 for wrong usage, 3 when the\n"
         "command was not finished in time, 4 when the service was not reached or refused.\n";
}

}  // namespace service
