#include "fmsim/Commands.h"

#include <algorithm>
#include <cctype>
#include <iostream>

#include "calc/Lexer.h"
#include "calc/Unicode.h"
#include "fmsim/Seconds.h"
#include "wrapper/Host.h"

namespace {

using calc::ToUtf8;

void ListFiles(Session& session, const std::string&) {
  auto& application = session.application();
  const auto* active = application.files().active();
  for (const auto& file : application.files().all()) {
    const auto& solution = file->solution;
    std::cout << (file.get() == active ? "* " : "  ") << ToUtf8(solution.fileName) << "  ("
              << solution.baseTables.size() << " tables, " << solution.occurrences.size() << " occurrences; account "
              << (file->account == nullptr ? "none" : ToUtf8(file->account->name)) << ")\n";
  }
}

void ListPlugins(Session& session, const std::string&) {
  for (const auto& plugin : session.application().plugins().all()) {
    std::cout << plugin->fileName() << "\n  name         " << ToUtf8(plugin->name()) << "\n  description  "
              << ToUtf8(plugin->description()) << "\n  options      " << ToUtf8(plugin->options())
              << "\n  help         " << ToUtf8(plugin->helpUrl()) << '\n';
  }
}

void ListScripts(Session& session, const std::string&) {
  const auto* file = session.application().files().active();
  if (file == nullptr) return;
  std::string indent;
  for (const auto& script : file->solution.scripts) {
    if (script.kind == sim::ListItem::kFolderEnd) {
      indent.resize(indent.size() < 2 ? 0 : indent.size() - 2);
      continue;
    }
    const bool separator = script.kind == sim::ListItem::kSeparator;
    const bool folder = script.kind == sim::ListItem::kFolder;
    std::cout << indent << (separator ? "-" : ToUtf8(script.name)) << (folder ? "/" : "") << '\n';
    if (folder) indent += "  ";
  }
}

void ListFunctions(Session&, const std::string&) {
  for (const auto& function : wrapper::Functions()) {
    std::cout << function.id << "  " << ToUtf8(function.prototype) << "\n     " << ToUtf8(function.description) << '\n';
  }
}

std::string Trimmed(const std::string& text) {
  const auto first = text.find_first_not_of(" \t\r");
  if (first == text.npos) return {};
  return text.substr(first, text.find_last_not_of(" \t\r") - first + 1);
}

void RunScript(Session& session, const std::string& argument) {
  const auto semicolon = std::min(argument.find(';'), argument.size());
  const bool given = semicolon < argument.size();
  if (given && !session.EvaluateScriptParameter(argument.substr(semicolon + 1))) return;
  session.RunScript(Trimmed(argument.substr(0, semicolon)));
}

void Idle(Session& session, const std::string& argument) {
  if (const auto duration = ParseSeconds(argument.empty() ? "0" : argument)) {
    session.IdleFor(*duration);
  } else {
    session.Fail(".idle takes a number of seconds");
  }
}

void Help(Session&, const std::string&);

struct Command {
  const char* name;
  const char* argument;  // "" for none
  const char* help;
  void (*run)(Session&, const std::string& argument);
};

constexpr Command kCommands[] = {
    {".open", "EXPORT", "open a solution file, a \"Save a Copy as XML\" export",
     [](Session& session, const std::string& path) { session.Open(path); }},
    {".files", "", "list the open files; * marks the active one", ListFiles},
    {".activate", "FILE", "bring a file to the front",
     [](Session& session, const std::string& name) { session.Activate(name); }},
    {".scripts", "", "list the scripts of the active file", ListScripts},
    {".run", "SCRIPT [; CALC]", "run a script of the active file, with CALC as its parameter", RunScript},
    {".plugin", "FILE", "load a plug-in", [](Session& session, const std::string& path) { session.LoadPlugin(path); }},
    {".plugins", "", "show name, description and options of the plug-ins", ListPlugins},
    {".functions", "", "list the functions of the plug-ins", ListFunctions},
    {".idle", "[SECONDS]", "send idle messages for this many seconds, by default one message", Idle},
    {".check", "CALC", "fail unless a calculation is true",
     [](Session& session, const std::string& formula) { session.Check(formula); }},
    {".say", "[TEXT]", "print a line", [](Session&, const std::string& text) { std::cout << text << '\n'; }},
    {".echo", "on|off", "show each line read from a pipe or file before it is carried out",
     [](Session& session, const std::string& state) { session.echo = state == "on"; }},
    {".help", "", "show this list", Help},
    {".quit", "", "end", nullptr},
};

void Help(Session&, const std::string&) {
  std::cout << "Type a calculation, or:\n";
  for (const auto& command : kCommands) {
    std::string usage = std::string("  ") + command.name + ' ' + command.argument;
    usage.resize(std::max<std::size_t>(usage.size() + 1, 25), ' ');
    std::cout << usage << command.help << '\n';
  }
}

LineResult ExecuteCommand(Session& session, const std::string& line) {
  const auto space = std::min(line.find(' '), line.size());
  const std::string name = line.substr(0, space);
  const std::string argument = Trimmed(line.substr(space));
  for (const auto& command : kCommands) {
    if (command.name != name) continue;
    if (command.run == nullptr) return LineResult::kQuit;
    const bool wanted = *command.argument != '\0' && *command.argument != '[';
    if (wanted && argument.empty()) {
      session.Fail(name + " needs " + command.argument);
    } else {
      command.run(session, argument);
      std::cout.flush();
    }
    return LineResult::kContinue;
  }
  session.Fail("no command " + name + "; .help lists them");
  return LineResult::kContinue;
}

bool IsCommand(const std::string& text) {
  return text.size() > 1 && text[0] == '.' && std::isalpha(static_cast<unsigned char>(text[1])) != 0;
}

bool IsComment(const std::string& text) { return text.starts_with("//"); }

}  // namespace

LineResult Execute(Session& session, const std::string& line) {
  const std::string text = Trimmed(line);
  if (text.empty() || IsComment(text)) return LineResult::kContinue;
  if (IsCommand(text)) return ExecuteCommand(session, text);
  session.Evaluate(text);
  return LineResult::kContinue;
}

bool IsUnfinished(const std::string& line) {
  const std::string text = Trimmed(line);
  return !IsComment(text) && !IsCommand(text) && calc::IsUnfinished(calc::ToUtf16(text));
}

std::vector<std::string> CommandNames() {
  std::vector<std::string> names;
  for (const auto& command : kCommands) names.emplace_back(command.name);
  return names;
}
