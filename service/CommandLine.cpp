#include <CLI/CLI.hpp>
#include <cstdlib>
#include <iostream>

#include "Subcommands.h"
#include "protocol/CommandTypes.h"
#include "system/System.h"

namespace service {
namespace {

constexpr long kLongestTime = 100L * 365 * 86400;  // seconds
constexpr long kLongestWait = 86400;
constexpr long kMostBodyMegabytes = 900;  // SQLite keeps values below 1000 MB
constexpr long kMostRows = 1'000'000'000;
constexpr char kDesign[] =
    "path of an export, saved as XML by FileMaker, or a design in the store: its id, or the name of its file for the "
    "newest";
constexpr char kJsonLines[] = "print one JSON object per line";

using Run = ExitStatus (*)(const Options&);

// Seconds, or with a unit: "30d", "12h".
CLI::Validator Duration() {
  return CLI::AsNumberWithUnit(std::map<std::string, long>{{"s", 1}, {"min", 60}, {"h", 3600}, {"d", 86400}},
                               CLI::AsNumberWithUnit::CASE_SENSITIVE, "DURATION");
}

// Read here, because the subcommands share the variables: the library would fill them once for each subcommand.
void ReadVariable(const char* name, std::string& value) {
  const char* text = std::getenv(name);
  if (text != nullptr && *text != '\0') value = text;
}

class CommandLine {
 public:
  CommandLine() {
    ReadVariable("VARNIX_SERVICE", options_.url);
    ReadVariable("VARNIX_DATA", options_.data);
    ReadVariable("VARNIX_KEY", options_.key);
    app_.require_subcommand(1);
    app_.set_version_flag("--version", "varnix-service " VARNIX_VERSION);
    app_.footer("TYPE is one of " + CommandTypeNames(Reader::kPerson) +
                ".\nExit status: 0, 1 when the command failed or the service could not start, 2 for wrong usage, 3 "
                "when the\ncommand did not finish in time, 4 when the service could not be reached or refused.");
    AddServe();
    AddSend();
    AddQueries();
    AddPrune();
    AddChanges();
    AddReferences();
    AddSearchAndExport();
    AddHistory();
    AddClient("mcp", "serve an AI assistant on standard input and output (Model Context Protocol)", RunMcp);
  }

  int Parse(int argc, char** argv) try {
    app_.parse(argc, argv);
    return run_(options_);
  } catch (const CLI::ParseError& error) {
    if (error.get_exit_code() != 0) throw UsageError(error.what());
    return app_.exit(error);
  }

 private:
  CLI::App* AddPlain(const char* name, const char* help, Run run) {
    CLI::App* subcommand = app_.add_subcommand(name, help);
    subcommand->callback([this, run] { run_ = run; });
    subcommand->add_option("--data", options_.data, "the service's data folder ($VARNIX_DATA)")->type_name("DIR");
    return subcommand;
  }

  CLI::App* Add(const char* name, const char* help, Run run) {
    CLI::App* subcommand = AddPlain(name, help, run);
    subcommand
        ->add_option("--key", options_.key,
                     "the service's account key instead of the one in its data folder ($VARNIX_KEY)")
        ->type_name("KEY");
    return subcommand;
  }

  CLI::App* AddClient(const char* name, const char* help, Run run) {
    CLI::App* subcommand = Add(name, help, run);
    subcommand->add_option("--service", options_.url, "address of the service ($VARNIX_SERVICE)")
        ->type_name("URL")
        ->capture_default_str();
    return subcommand;
  }

  void AddServe() {
    CLI::App* serve = Add("serve", "run the service until it is interrupted", RunServe);
    CLI::App* install = AddPlain("install", "run the service now and at each login", RunInstall);
    AddPlain("uninstall", "stop running the service at login; its data stays", RunUninstall);
    for (CLI::App* subcommand : {serve, install}) {
      subcommand->add_option("--listen", options_.listen, "address to listen on; port 0 picks a free one")
          ->type_name("ADDR:PORT")
          ->capture_default_str();
      subcommand->add_option("--agents", options_.agents, "what AI assistants may use: full, read-only or off")
          ->check(CLI::IsMember({"full", "read-only", "off"}))
          ->type_name("MODE")
          ->capture_default_str();
      subcommand->add_flag("--no-key", options_.noKey, "accept every key, but only from programs on this machine");
      subcommand->add_option("--max-body", options_.maxBody, "largest accepted request, in MB")
          ->check(CLI::Range(1L, kMostBodyMegabytes))
          ->capture_default_str();
    }
    AddClient("sign-in", "print the line that signs FileMaker in to the service", RunSignIn);
    CLI::App* console = AddClient("console", "print the address that opens the console in a browser", RunConsole);
    console->add_flag("--open", options_.open, "open it in the browser");
    serve->add_option("--latest-version", options_.latestVersion, "plug-in version to report as current")
        ->type_name("V");
  }

  void AddSend() {
    CLI::App* send = AddClient("send", "send a command to the plug-in, wait, print the result", RunSend);
    send->add_option("TYPE", options_.type, "what to do")->required();
    send->add_option("--file", options_.file, "FileMaker file that the command is about")->type_name("NAME");
    send->add_option("--xml-type", options_.xmlType, "kind of FileMaker XML, such as XMSS")->type_name("KIND");
    send->add_option("--content", options_.content, "file with the XML for the clipboard; - reads standard input")
        ->type_name("FILE");
    send->add_flag("--force", options_.force, "send content even if it is not a FileMaker snippet");
    send->add_option("--expires", options_.expires,
                     "withdraw the command if no plug-in has fetched it by then (clipboard commands 60 s, others "
                     "10 min)")
        ->transform(Duration())
        ->check(CLI::Range(1L, kLongestTime));
    AddWait(send, "how long to wait; 0 prints the command's ID instead of its result");
  }

  void AddWait(CLI::App* subcommand, const char* help) {
    subcommand->add_option("--wait", options_.wait, help)
        ->transform(Duration())
        ->check(CLI::Range(0L, kLongestWait))
        ->default_str("60");
  }

  void AddJson(CLI::App* subcommand, const char* help = "print the service's JSON answer") {
    subcommand->add_flag("--json", options_.json, help);
  }

  void AddQueries() {
    CLI::App* result = AddClient("result", "wait for a command and print its result", RunResult);
    AddWait(result, "how long to wait");
    CLI::App* cancel = AddClient("cancel", "withdraw a command that no plug-in has fetched yet", RunCancel);
    cancel->add_flag("--delivered", options_.delivered,
                     "also forget one that a plug-in has fetched; FileMaker may still carry it out");
    CLI::App* show = AddClient("show", "show everything about one command except its result", RunShow);
    for (CLI::App* subcommand : {result, cancel, show}) {
      subcommand->add_option("ID", options_.id, "of the command")->required();
    }
    CLI::App* records = AddClient("records", "list what the plug-in sent, or print one record's content", RunRecords);
    records->add_option("NUMBER", options_.record, "of the record to print");
    records->add_option("--kind", options_.kind, "sign-in, push, diagnostic, ingest, snapshot, upload or clip");
    records->add_option("--command", options_.id, "ID of the command that they belong to");
    CLI::App* list = AddClient("list", "list the latest commands and their states", RunList);
    CLI::App* status = AddClient("status", "show whether service and plug-in are connected", RunStatus);
    for (CLI::App* subcommand : {show, records, list, status}) AddJson(subcommand);
  }

  void AddPrune() {
    CLI::App* prune = AddClient("prune", "delete old commands and records", RunPrune);
    prune->add_option("--older-than", options_.olderThan, "delete only what is older, such as 30d or 12h")
        ->transform(Duration())
        ->check(CLI::Range(0L, kLongestTime));
    prune->add_option("--keep", options_.keep, "keep the newest N records of each kind and name")
        ->type_name("N")
        ->check(CLI::Range(0L, kMostRows));
  }

  void AddChanges() {
    CLI::App* changes = AddPlain("changes", "show what changed between two exports of a file", RunChanges);
    changes->add_option("OLD", options_.design, kDesign)->required();
    changes->add_option("NEW", options_.newer,
                        "the newer one; without it, the newest two designs of the file OLD are compared");
    AddJson(changes, kJsonLines);
  }

  void AddReferences() {
    CLI::App* references = AddPlain("references", "show where the elements of a file are used", RunReferences);
    references->add_option("FILE", options_.design, kDesign)->required();
    references->add_option("--of", options_.of, "only what this element uses and is used by; a name or UUID")
        ->type_name("NAME");
    auto* unused =
        references->add_flag("--unused", options_.unused, "list the elements that nothing refers to instead");
    references->add_flag("--broken", options_.broken, "list references to deleted elements instead")->excludes(unused);
    references->add_option("--with", options_.others, "design of another file of the solution; may be repeated")
        ->type_name("FILE")
        ->allow_extra_args(false);
    AddJson(references, kJsonLines);
  }

  void AddSearchAndExport() {
    CLI::App* search = AddPlain("search", "find text in names, formulas, script steps and comments", RunSearch);
    search->add_option("TEXT", options_.text, "text to find; case does not matter")->required();
    search->add_option("FILE", options_.design, "path of an export, or a file in the store; otherwise the whole store");
    AddJson(search, kJsonLines);
    CLI::App* folder = AddPlain("export", "write a design as readable files, for version control", RunExport);
    folder->add_option("DESIGN", options_.design, kDesign)->required();
    folder->add_option("FOLDER", options_.folder, "a new or empty folder, or that of an earlier export")->required();
  }

  void AddHistory() {
    CLI::App* designs = AddPlain("designs", "list the designs that the service has received", RunDesigns);
    designs->add_option("FILE", options_.design, "only those of this file; a name or UUID");
    AddJson(designs, kJsonLines);
    CLI::App* label = AddPlain("label", "set the label or the note of a stored design", RunLabel);
    label->add_option("DESIGN", options_.design, "its id")->required()->check(CLI::Range(1L, kMostRows));
    label->add_option("LABEL", options_.label, "the new label; an empty one removes it");
    label->add_option("--note", options_.note, "the new note; an empty one removes it")->type_name("TEXT");
  }

  CLI::App app_{"A bridge service on this machine.", "varnix-service"};
  Options options_;
  Run run_ = nullptr;
};

}  // namespace

std::string Options::Folder() const { return data.empty() ? DefaultFolder() : data; }

int RunCommandLine(int argc, char** argv) { return CommandLine().Parse(argc, argv); }

}  // namespace service
