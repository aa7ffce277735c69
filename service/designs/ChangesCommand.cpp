// varnix-service changes OLD NEW.
#include <algorithm>
#include <map>
#include <ostream>

#include "changes/Changes.h"
#include "changes/LineDiff.h"
#include "designs/DesignCommands.h"
#include "designs/DesignJson.h"
#include "designs/OpenDesign.h"

namespace service {
namespace {

using solution::Change;
using solution::ChangeKind;
using solution::DiffLine;
using solution::PropertyChange;

constexpr std::size_t kContext = 2;  // unchanged lines around a change

const solution::Element& ElementOf(const Change& change) { return *(change.newer ? change.newer : change.older); }

class Printer {
 public:
  Printer(const Colours& colours, std::ostream& out) : colours_(colours), out_(out) {}

  void Print(const std::vector<Change>& changes) {
    std::string_view kind;
    for (const Change& change : changes) {
      const std::string_view plural = NamesOf(ElementOf(change).kind).plural;
      if (plural != kind) out_ << (kind.empty() ? "" : "\n") << colours_.Bold(plural) << '\n';
      kind = plural;
      PrintChange(change);
    }
    PrintTotals(changes);
  }

 private:
  std::string Word(ChangeKind change) const {
    std::string word(WordOf(change));
    word.resize(9, ' ');
    if (change == ChangeKind::kAdded) return colours_.Green(word);
    if (change == ChangeKind::kRemoved) return colours_.Red(word);
    return colours_.Yellow(word);
  }

  void PrintChange(const Change& change) {
    const std::string name = LineForTerminal(DisplayName(ElementOf(change)));
    out_ << "  " << Word(change.change);
    if (change.change == ChangeKind::kRenamed) {
      out_ << LineForTerminal(DisplayName(*change.older)) << " -> " << name << '\n';
    } else if (change.change == ChangeKind::kMoved) {
      const PropertyChange& folder = change.properties.front();
      out_ << name;
      if (folder.name == "folder") out_ << ": from " << Folder(folder.older) << " to " << Folder(folder.newer);
      out_ << '\n';
    } else {
      out_ << name << Author(change) << '\n';
      for (const PropertyChange& property : change.properties) PrintProperty(property);
    }
  }

  // Who changed it last, and when.
  std::string Author(const Change& change) const {
    if (change.newer == nullptr || change.newer->time.empty()) return {};
    std::string time(change.newer->time);
    std::replace(time.begin(), time.end(), 'T', ' ');
    return colours_.Dim("  " + LineForTerminal(change.newer->user) + ", " + LineForTerminal(time));
  }

  static std::string Folder(const std::string& name) {
    return name.empty() ? "the top level" : "folder \"" + LineForTerminal(name) + '"';
  }

  static bool IsLong(const std::string& text) { return text.find('\n') != std::string::npos; }

  void PrintProperty(const PropertyChange& property) {
    out_ << "    " << LineForTerminal(property.name);
    if (property.older == property.newer) {
      out_ << colours_.Dim(" (a detail that is not shown)") << '\n';
    } else if (IsLong(property.older) || IsLong(property.newer)) {
      out_ << '\n';
      PrintLines(solution::DiffLines(property.older, property.newer));
    } else {
      out_ << ": " << colours_.Red(Value(property.older)) << " -> " << colours_.Green(Value(property.newer)) << '\n';
    }
  }

  static std::string Value(const std::string& value) { return value.empty() ? "(none)" : LineForTerminal(value); }

  void PrintLines(const std::vector<DiffLine>& lines) {
    std::size_t shown = 0;
    for (std::size_t i = 0; i < lines.size(); ++i) {
      const auto first = lines.begin() + static_cast<std::ptrdiff_t>(i < kContext ? 0 : i - kContext);
      const auto last = lines.begin() + static_cast<std::ptrdiff_t>(std::min(lines.size(), i + kContext + 1));
      const auto isChanged = [](const DiffLine& line) { return line.origin != DiffLine::Origin::kBoth; };
      if (std::none_of(first, last, isChanged)) continue;
      if (i > shown) out_ << "      " << colours_.Dim("...") << '\n';
      shown = i + 1;
      PrintLine(lines[i]);
    }
  }

  void PrintLine(const DiffLine& line) {
    const std::string text = LineForTerminal(line.text);
    switch (line.origin) {
      case DiffLine::Origin::kBoth:
        out_ << "        " << text << '\n';
        return;
      case DiffLine::Origin::kOlder:
        out_ << "      " << colours_.Red("- " + text) << '\n';
        return;
      case DiffLine::Origin::kNewer:
        out_ << "      " << colours_.Green("+ " + text) << '\n';
        return;
    }
  }

  void PrintTotals(const std::vector<Change>& changes) {
    std::map<ChangeKind, int> counts;
    for (const Change& change : changes) ++counts[change.change];
    std::string totals;
    for (const auto& [change, count] : counts) {
      totals += (totals.empty() ? "" : ", ") + std::to_string(count) + ' ' + std::string(WordOf(change));
    }
    out_ << (changes.empty() ? "no changes" : "\n" + totals) << '\n';
  }

  const Colours& colours_;
  std::ostream& out_;
};

}  // namespace

void PrintChanges(const Options& options, const Colours& colours, std::ostream& out, std::ostream& warnings) {
  const auto [olderName, newerName] =
      options.newer.empty() ? NewestTwo(options.design, options.Folder()) : std::pair(options.design, options.newer);
  const auto older = OpenDesign(olderName, options.Folder(), warnings);
  const auto newer = OpenDesign(newerName, options.Folder(), warnings);
  const auto comparison = Compare(*older, *newer, ShowProgress("comparing"));
  for (const std::string& warning : comparison.warnings) warnings << "warning: " << LineForTerminal(warning) << '\n';
  if (!options.json) return Printer(colours, out).Print(comparison.changes);
  for (const Change& change : comparison.changes) out << DescribeChange(change).dump() << '\n';
}

}  // namespace service
