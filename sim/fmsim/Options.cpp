#include "fmsim/Options.h"

#include <charconv>
#include <cstring>
#include <limits>

#include "fmsim/Seconds.h"

namespace {

using Action = std::function<bool(Session&)>;

struct Choice {
  const char* word;
  int value;
};

constexpr Choice kApplications[] = {{"pro", 1}, {"server", 7}};
constexpr Choice kFunctionSets[] = {{"all", 1}, {"host", 0}};
constexpr Choice kSqlModes[] = {{"strict", 0}, {"lenient", 1}};

template <std::size_t N>
bool Choose(const std::string& word, const Choice (&choices)[N], int& value) {
  for (const auto& choice : choices) {
    if (word == choice.word) {
      value = choice.value;
      return true;
    }
  }
  return false;
}

bool ParseNumber(const std::string& text, int lowest, int highest, int& value) {
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  return error == std::errc() && end == text.data() + text.size() && value >= lowest && value <= highest;
}

// Each option turns its value into an action; an empty action means that the value is wrong.
struct Option {
  const char* name;
  const char* value;
  const char* help;
  Action (*parse)(const std::string& value);
};

Action SetBehaviour(void (*change)(sim::HostBehaviour&, int), int value) {
  return [=](Session& session) {
    auto behaviour = session.application().behaviour();
    change(behaviour, value);
    session.application().SetBehaviour(behaviour);
    return true;
  };
}

const Option kOptions[] = {
    {"--plugin", "FILE", "load a plug-in and initialise it",
     [](const std::string& value) -> Action { return [=](Session& session) { return session.LoadPlugin(value); }; }},
    {"--open", "EXPORT.xml", "open a solution, an export made with Save a Copy as XML",
     [](const std::string& value) -> Action { return [=](Session& session) { return session.Open(value); }; }},
    {"--eval", "CALC", "evaluate a calculation in the active file and print its result",
     [](const std::string& value) -> Action { return [=](Session& session) { return session.Evaluate(value); }; }},
    {"--run", "SCRIPT", "run a script of the active file",
     [](const std::string& value) -> Action { return [=](Session& session) { return session.RunScript(value); }; }},
    {"--parameter", "TEXT", "the parameter of the script that the next --run runs",
     [](const std::string& value) -> Action {
       return [=](Session& session) {
         session.SetScriptParameter(value);
         return true;
       };
     }},
    {"--activate", "FILE", "bring an open file to the front",
     [](const std::string& value) -> Action { return [=](Session& session) { return session.Activate(value); }; }},
    {"--idle", "SECONDS", "send idle messages for this many seconds",
     [](const std::string& value) -> Action {
       const auto duration = ParseSeconds(value);
       if (!duration) return {};
       return [=](Session& session) {
         session.IdleFor(*duration);
         return true;
       };
     }},
    {"--idle-interval", "MS", "time from one idle message to the next, from now on (100)",
     [](const std::string& value) -> Action {
       int interval = 0;
       if (!ParseNumber(value, 1, 3600000, interval)) return {};
       return [=](Session& session) {
         session.SetIdleInterval(std::chrono::milliseconds(interval));
         return true;
       };
     }},
    {"--idle-level", "N", "0 idle, 1 user busy, 2 script paused, 3 script running, 4 unsafe (0)",
     [](const std::string& value) -> Action {
       int level = 0;
       if (!ParseNumber(value, 0, 4, level)) return {};
       return [=](Session& session) {
         session.SetIdleLevel(level);
         return true;
       };
     }},
    {"--host-version", "N", "extension version reported to plug-ins loaded from now on (71)",
     [](const std::string& value) -> Action {
       int version = 0;
       if (!ParseNumber(value, 0, int{std::numeric_limits<short>::max()}, version)) return {};
       return [=](Session& session) {
         session.application().plugins().identity().extensionVersion = static_cast<short>(version);
         return true;
       };
     }},
    {"--application", "pro|server", "kind of application reported to plug-ins loaded from now on (pro)",
     [](const std::string& value) -> Action {
       int application = 0;
       if (!Choose(value, kApplications, application)) return {};
       return [=](Session& session) {
         session.application().plugins().identity().application = static_cast<FMX_Application>(application);
         return true;
       };
     }},
    {"--functions", "all|host", "host: without PrivilegeSetNames and CustomFunctionNames, which FileMaker lacks (all)",
     [](const std::string& value) -> Action {
       int all = 0;
       if (!Choose(value, kFunctionSets, all)) return {};
       return SetBehaviour([](sim::HostBehaviour& b, int v) { b.allDesignFunctions = v != 0; }, all);
     }},
    {"--sql", "strict|lenient", "lenient: ExecuteSQL accepts literals in doubled quotes (strict)",
     [](const std::string& value) -> Action {
       int lenient = 0;
       if (!Choose(value, kSqlModes, lenient)) return {};
       return SetBehaviour([](sim::HostBehaviour& b, int v) { b.lenientSql = v != 0; }, lenient);
     }},
};

const Option* FindOption(const char* name) {
  for (const auto& option : kOptions) {
    if (std::strcmp(option.name, name) == 0) return &option;
  }
  return nullptr;
}

// Empty, with an `error`, when there is no such option or it does not accept `value`. A null `value` is missing.
Action ParseOption(const std::string& name, const char* value, std::string& error) {
  const Option* option = FindOption(name.c_str());
  if (option == nullptr) {
    error = "unknown option " + name;
    return {};
  }
  if (value == nullptr) {
    error = name + " needs " + option->value;
    return {};
  }
  Action action = option->parse(value);
  if (!action) error = name + " takes " + option->value + ", not \"" + value + "\"";
  return action;
}

}  // namespace

bool ParseCommandLine(int argc, char** argv, CommandLine& line, std::string& error) {
  for (int i = 1; i < argc; ++i) {
    const std::string name = argv[i];
    if (name == "--help" || name == "-h") {
      line.help = true;
      continue;
    }
    Action action = ParseOption(name, i + 1 < argc ? argv[i + 1] : nullptr, error);
    if (!action) return false;
    ++i;
    line.actions.push_back(std::move(action));
    line.evaluates = line.evaluates || name == "--eval" || name == "--run" || name == "--idle";
  }
  return true;
}

std::string Usage() {
  std::string text =
      "usage: fmsim [option value]...\n"
      "A simulated FileMaker Pro. The options are carried out in the order given:\n";
  for (const auto& option : kOptions) {
    std::string left = std::string("  ") + option.name + ' ' + option.value;
    left.resize(std::max<std::size_t>(left.size() + 1, 27), ' ');
    text += left + option.help + '\n';
  }
  return text +
         "Without --eval, --run or --idle it then reads lines: calculations, and commands (.help lists them).\n"
         "Exit status: 0, 1 when anything failed, 2 for wrong usage, 130 after Ctrl-C.\n";
}
