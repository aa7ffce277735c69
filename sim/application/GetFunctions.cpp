#include "application/GetFunctions.h"

#include <pwd.h>
#include <sys/types.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <random>

#include "application/HostPaths.h"
#include "calc/Unicode.h"

namespace sim {

namespace {

using calc::Value;

constexpr long long kDaysToUnixEpoch = 719163;  // 1 January 1970, counted from 1 January of year 1 as day 1
constexpr long long kSecondsPerDay = 86400;

Value Text(std::u16string text) { return Value::OfText(std::move(text)); }
Value Utf8(const std::string& text) { return Value::OfText(calc::ToUtf16(text)); }
Value Number(long long number) { return Value::OfNumber(number); }

const PrivilegeSet* AccountPrivilegeSet(const Context& context) {
  const OpenFile* file = context.file();
  if (file == nullptr || file->account == nullptr) return nullptr;
  return file->solution.FindPrivilegeSet(file->account->privilegeSetId);
}

std::u16string NameOf(const PrivilegeSet* set) { return set == nullptr ? u"" : set->name; }

std::string UserName() {
  const passwd* entry = getpwuid(getuid());
  return entry == nullptr ? "user" : entry->pw_name;
}

// FileMaker's is a fingerprint of the machine, so it must be the same in every run.
std::u16string PersistentId() {
  std::string machine;
  std::getline(std::ifstream("/etc/machine-id"), machine);
  std::string digits;
  std::uint64_t hash = 14695981039346656037u;
  for (int half = 0; half < 2; ++half) {
    for (const char c : machine + UserName()) hash = (hash ^ static_cast<unsigned char>(c)) * 1099511628211u;
    char text[17];
    std::snprintf(text, sizeof text, "%016llX", static_cast<unsigned long long>(hash));
    digits += text;
  }
  return calc::ToUtf16(digits);
}

std::u16string Uuid() {
  std::random_device random;
  std::uint32_t words[4];
  for (auto& word : words) word = random();
  words[1] = (words[1] & 0xFFFF0FFF) | 0x4000;
  words[2] = (words[2] & 0x3FFFFFFF) | 0x80000000;
  char text[37];
  std::snprintf(text, sizeof text, "%08X-%04X-%04X-%04X-%04X%08X", words[0], words[1] >> 16, words[1] & 0xFFFF,
                words[2] >> 16, words[2] & 0xFFFF, words[3]);
  return calc::ToUtf16(text);
}

// Seconds since 1 January of year 1, local time.
long long LocalSeconds() {
  const std::time_t now = std::time(nullptr);
  std::tm local{};
  localtime_r(&now, &local);
  return kDaysToUnixEpoch * kSecondsPerDay - kSecondsPerDay + now + local.tm_gmtoff;
}

long long UtcMilliseconds() {
  const auto unixTime = std::chrono::system_clock::now().time_since_epoch();
  return (kDaysToUnixEpoch - 1) * kSecondsPerDay * 1000 +
         std::chrono::duration_cast<std::chrono::milliseconds>(unixTime).count();
}

std::u16string WindowName(const Context& context) {
  for (const auto& window : context.application().files().windows().windows) {
    if (context.file() != nullptr && window.solution == &context.file()->solution) return window.name;
  }
  return u"";
}

std::u16string ApplicationVersion(const Context& context) { return context.application().plugins().identity().version; }

std::u16string LayoutTable(const Context& context) {
  const Layout* layout = context.file() == nullptr ? nullptr : StartLayout(context.file()->solution);
  if (layout == nullptr || !layout->occurrenceId) return u"";
  const auto* occurrence = context.file()->solution.FindOccurrence(*layout->occurrenceId);
  return occurrence == nullptr ? u"" : occurrence->name;
}

// Counted from 1 in the order of the file's list.
long long LayoutNumber(const Context& context) {
  if (context.file() == nullptr) return 0;
  const Layout* current = StartLayout(context.file()->solution);
  long long number = 0;
  for (const auto& layout : context.file()->solution.layouts) {
    if (layout.kind == ListItem::kItem) ++number;
    if (&layout == current) return number;
  }
  return 0;
}

std::u16string ExtendedPrivileges(const Context& context) {
  std::u16string list;
  const PrivilegeSet* set = CurrentPrivilegeSet(context);
  if (set == nullptr) return list;
  for (const auto& keyword : set->extendedPrivileges) list += (list.empty() ? u"" : u"\r") + keyword;
  return list;
}

std::u16string InstalledPlugins(const Context& context) {
  std::u16string list;
  for (const auto& plugin : context.application().plugins().all()) {
    list += (list.empty() ? u"" : u"\r") + plugin->name() + u";;Enabled";
  }
  return list;
}

struct Parameter {
  const char16_t* name;
  Value (*evaluate)(const Context& context);
};

// Sorted by name. A context without a file answers as FileMaker does before any file is open: with nothing.
const Parameter kParameters[] = {
    {u"AccountName",
     [](const Context& c) { return Text(c.file() && c.file()->account ? c.file()->account->name : u""); }},
    {u"AccountPrivilegeSetName", [](const Context& c) { return Text(NameOf(AccountPrivilegeSet(c))); }},
    {u"ApplicationVersion", [](const Context& c) { return Text(ApplicationVersion(c)); }},
    // The files are not on a server.
    {u"ConnectionState", [](const Context&) { return Number(0); }},
    {u"CurrentDate",
     [](const Context&) { return Value::OfMoment(calc::Type::kDate, LocalSeconds() / kSecondsPerDay + 1); }},
    {u"CurrentExtendedPrivileges", [](const Context& c) { return Text(ExtendedPrivileges(c)); }},
    {u"CurrentHostTimestamp", [](const Context&) { return Value::OfMoment(calc::Type::kTimestamp, LocalSeconds()); }},
    {u"CurrentPrivilegeSetName", [](const Context& c) { return Text(NameOf(CurrentPrivilegeSet(c))); }},
    {u"CurrentTime",
     [](const Context&) { return Value::OfMoment(calc::Type::kTime, LocalSeconds() % kSecondsPerDay); }},
    {u"CurrentTimeUTCMilliseconds", [](const Context&) { return Number(UtcMilliseconds()); }},
    {u"CurrentTimestamp", [](const Context&) { return Value::OfMoment(calc::Type::kTimestamp, LocalSeconds()); }},
    {u"DesktopPath", [](const Context&) { return Text(FileMakerPath(HomeDirectory() + "/Desktop/")); }},
    {u"DocumentsPath", [](const Context&) { return Text(FileMakerPath(HomeDirectory() + "/Documents/")); }},
    {u"ErrorCaptureState", [](const Context& c) { return Number(c.script() && c.script()->errorCapture ? 1 : 0); }},
    {u"FileName", [](const Context& c) { return Text(c.file() ? c.file()->solution.name : u""); }},
    {u"FilePath",
     [](const Context& c) {
       if (c.file() == nullptr) return Text(u"");
       const auto folder = FolderOf(c.file()->solution.path) + "/";
       return Text(u"file:" + FileMakerPath(folder) + c.file()->solution.fileName);
     }},
    {u"FoundCount", [](const Context&) { return Number(0); }},
    {u"HostName", [](const Context&) { return Text(u""); }},
    {u"InstalledFMPlugins", [](const Context& c) { return Text(InstalledPlugins(c)); }},
    {u"LastError", [](const Context& c) { return Number(c.script() ? c.script()->lastError : 0); }},
    // A custom dialog is answered with its first button.
    {u"LastMessageChoice", [](const Context&) { return Number(1); }},
    {u"LayoutName",
     [](const Context& c) {
       const Layout* layout = c.file() == nullptr ? nullptr : StartLayout(c.file()->solution);
       return Text(layout == nullptr ? u"" : layout->name);
     }},
    {u"LayoutNumber", [](const Context& c) { return Number(LayoutNumber(c)); }},
    {u"LayoutTableName", [](const Context& c) { return Text(LayoutTable(c)); }},
    {u"PersistentID", [](const Context&) { return Text(PersistentId()); }},
    // The name that FileMaker 8 used; plug-ins still ask for it.
    {u"PrivilegeSetName", [](const Context& c) { return Text(NameOf(CurrentPrivilegeSet(c))); }},
    {u"RecordID", [](const Context&) { return Number(0); }},
    {u"ScriptName", [](const Context& c) { return Text(c.script() ? c.script()->script->name : u""); }},
    {u"ScriptParameter", [](const Context& c) { return c.script() ? c.script()->parameter : Value(); }},
    {u"ScriptResult", [](const Context&) { return Value(); }},
    {u"SystemPlatform", [](const Context&) { return Number(1); }},
    {u"SystemVersion", [](const Context&) { return Text(u"14.5"); }},
    {u"TemporaryPath", [](const Context&) { return Text(FileMakerPath(TemporaryDirectory() + "/")); }},
    {u"UserName", [](const Context&) { return Utf8(UserName()); }},
    {u"UUID", [](const Context&) { return Text(Uuid()); }},
    {u"WindowMode", [](const Context&) { return Number(0); }},
    {u"WindowName", [](const Context& c) { return Text(WindowName(c)); }},
};

}  // namespace

std::optional<Value> EvaluateGet(std::u16string_view name, const Context& context) {
  for (const auto& parameter : kParameters) {
    if (calc::EqualIgnoringCase(parameter.name, name)) return parameter.evaluate(context);
  }
  return std::nullopt;
}

std::vector<std::u16string> GetParameterNames() {
  std::vector<std::u16string> names;
  for (const auto& parameter : kParameters) names.emplace_back(parameter.name);
  return names;
}

const Layout* StartLayout(const Solution& solution) {
  const Layout* first = nullptr;
  for (const auto& layout : solution.layouts) {
    if (layout.kind != ListItem::kItem) continue;
    if (solution.startLayoutId == layout.id) return &layout;
    if (first == nullptr) first = &layout;
  }
  return first;
}

const PrivilegeSet* CurrentPrivilegeSet(const Context& context) {
  if (context.script() != nullptr && context.script()->script->runWithFullAccess) {
    return context.file()->solution.FindPrivilegeSet(kFullAccess);
  }
  return AccountPrivilegeSet(context);
}

}  // namespace sim
