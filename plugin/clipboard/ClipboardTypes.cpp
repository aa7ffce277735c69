#include "clipboard/ClipboardTypes.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstring>
#include <utility>

#include "clipboard/Clipboard.h"

namespace {

struct Kind {
  std::string_view code;
  std::vector<std::string_view> typeNames;  // beyond the generic three
};

constexpr std::size_t kCodeLength = 4;

// In the order in which a clipboard of unknown kind is probed. The "dyn." names are those that macOS generates from the
// four-character codes.
const std::vector<Kind>& Kinds() {
  static const std::vector<Kind> kinds = {
      {"XMSS", {"dyn.ah62d4rv4gk8zuxnxnq", "ScriptStep", "Mac-ScriptStep"}},
      {"XMSC", {"dyn.ah62d4rv4gk8zuxnxkq", "Script", "Mac-Script"}},
      {"XML2", {"dyn.ah62d4rv4gk8zuxnqgk", "Layout12", "Mac-Layout12"}},
      {"XMTB", {"dyn.ah62d4rv4gk8zuxnykk", "Table", "BaseTable", "Mac-Table", "Mac-BaseTable"}},
      {"XMFD", {"dyn.ah62d4rv4gk8zuxngku", "Field", "FieldDefinition", "Mac-Field", "Mac-FieldDefinition"}},
      {"XMFN", {"dyn.ah62d4rv4gk8zuxngm2", "CustomFunction", "Mac-CustomFunction"}},
      {"XMVL", {"ValueList", "Mac-ValueList"}},
      {"XMLO", {}},
  };
  return kinds;
}

// The beginning of the "dyn." name of every code that begins with "XM", even of codes that no table lists.
constexpr std::string_view kDynamicKindPrefix = "dyn.ah62d4rv4gk8zuxn";

// The name under which Carbon exposes a four-character flavour type; "" for any other code.
std::string LegacyFlavorName(const std::string& code) {
  if (code.size() != kCodeLength) return {};
  char name[40];
  const auto byte = [&](std::size_t i) { return static_cast<unsigned>(static_cast<unsigned char>(code[i])); };
  std::snprintf(name, sizeof name, "CorePasteboardFlavorType 0x%02X%02X%02X%02X", byte(0), byte(1), byte(2), byte(3));
  return name;
}

// A text, found by searching for that of its letters that is rarest in XML.
struct Mark {
  std::string_view text;
  char rare;
  const char* code = nullptr;  // of the kind that the mark belongs to

  constexpr std::size_t Offset() const { return text.find(rare); }
};

// In order of precedence: a script with steps counts as script steps on purpose.
constexpr Mark kMarks[] = {
    {"<Step", '<', "XMSS"},  {"<Script", '<', "XMSC"}, {"ScriptUUID", 'U', "XMSC"}, {"<BaseTable", '<', "XMTB"},
    {"<Table", '<', "XMTB"}, {"<Field", '<', "XMFD"},  {"<ValueList", '<', "XMVL"}, {"<CustomFunction", '<', "XMFN"},
};
constexpr char kNoMark[] = "XML2";
constexpr std::size_t kMarkCount = std::size(kMarks);
constexpr std::size_t kUuidMark = 2;  // all others are searched for together, as tags
constexpr Mark kSnippet = {"<fmxmlsnippet", 'x'};

bool StandsAt(std::string_view text, std::size_t position, std::string_view mark) {
  return text.compare(position, mark.size(), mark) == 0;
}

using Prefix = std::array<char, 4>;

consteval bool TagMarksDifferInTheirPrefix() {
  for (std::size_t mark = 0; mark < kMarkCount; ++mark) {
    const auto prefix = kMarks[mark].text.substr(0, sizeof(Prefix));
    if (mark == kUuidMark) continue;
    if (kMarks[mark].Offset() != 0 || prefix.size() < sizeof(Prefix)) return false;
    for (std::size_t other = 0; other < mark; ++other) {
      if (kMarks[other].text.starts_with(prefix)) return false;
    }
  }
  return true;
}
static_assert(TagMarksDifferInTheirPrefix(), "BestTagMark compares only the prefix before it looks at the mark");
static_assert(kMarks[kUuidMark].Offset() != std::string_view::npos && kSnippet.Offset() != std::string_view::npos);

Prefix PrefixAt(std::string_view text, std::size_t position) {
  Prefix prefix;
  std::memcpy(prefix.data(), text.data() + position, prefix.size());
  return prefix;
}

// The best mark below `best` that begins with "<" within [begin, end).
std::size_t BestTagMark(std::string_view text, std::size_t begin, std::size_t end, std::size_t best) {
  static const auto prefixes = [] {
    std::array<Prefix, kMarkCount> all;
    for (std::size_t mark = 0; mark < kMarkCount; ++mark) all[mark] = PrefixAt(kMarks[mark].text, 0);
    return all;
  }();
  for (auto at = begin; at < end; ++at) {
    const auto* hit = static_cast<const char*>(std::memchr(text.data() + at, '<', end - at));
    if (hit == nullptr) break;
    at = static_cast<std::size_t>(hit - text.data());
    if (text.size() - at < sizeof(Prefix)) break;
    const Prefix prefix = PrefixAt(text, at);
    for (std::size_t mark = 0; mark < best; ++mark) {
      if (prefix == prefixes[mark] && StandsAt(text, at, kMarks[mark].text)) best = mark;
    }
    if (best == 0) break;
  }
  return best;
}

// Whether `mark` has its rare letter within [begin, end).
bool HoldsMark(std::string_view text, std::size_t begin, std::size_t end, const Mark& mark) {
  const std::size_t offset = mark.Offset();
  for (auto at = begin; at < end; ++at) {
    const auto* hit = static_cast<const char*>(std::memchr(text.data() + at, mark.rare, end - at));
    if (hit == nullptr) return false;
    at = static_cast<std::size_t>(hit - text.data());
    if (at >= offset && StandsAt(text, at - offset, mark.text)) return true;
  }
  return false;
}

}  // namespace

void AddUniqueType(std::vector<std::string>& list, const std::string& type) {
  if (!type.empty() && std::find(list.begin(), list.end(), type) == list.end()) list.push_back(type);
}

std::vector<std::string> BuildClipboardTypeCandidates(const std::string& code) {
  std::vector<std::string> candidates;
  AddUniqueType(candidates, LegacyFlavorName(code));
  AddUniqueType(candidates, Clipboard::BuildClipboardType(code));
  AddUniqueType(candidates, code);
  for (const auto& kind : Kinds()) {
    if (kind.code != code) continue;
    for (const auto name : kind.typeNames) AddUniqueType(candidates, std::string(name));
  }
  return candidates;
}

std::string DetectXmlClipboardType(const std::string& xml) {
  // Each block is searched for all marks while it is in the processor's cache.
  constexpr std::size_t kBlock = 1 << 15;
  std::size_t best = kMarkCount;
  for (std::size_t begin = 0; begin < xml.size() && best > 0; begin += kBlock) {
    const std::size_t end = std::min(begin + kBlock, xml.size());
    best = BestTagMark(xml, begin, end, best);
    if (best > kUuidMark && HoldsMark(xml, begin, end, kMarks[kUuidMark])) best = kUuidMark;
  }
  return best == kMarkCount ? kNoMark : kMarks[best].code;
}

bool HoldsSnippet(const std::string& text, std::size_t begin) {
  const std::size_t rare = begin + kSnippet.Offset();
  return rare < text.size() && HoldsMark(text, rare, text.size(), kSnippet);
}

bool IncludeFileMakerType(const std::vector<std::string>& types) {
  std::vector<std::string> candidates;
  for (const auto& kind : Kinds()) {
    for (auto& name : BuildClipboardTypeCandidates(std::string(kind.code))) candidates.push_back(std::move(name));
  }
  return std::any_of(types.begin(), types.end(), [&](const std::string& type) {
    return type.starts_with(kDynamicKindPrefix) ||
           std::find(candidates.begin(), candidates.end(), type) != candidates.end();
  });
}

bool ProbeFileMakerClipboardXML(std::string& code, std::string& xml, std::string& error) {
  for (const auto& kind : Kinds()) {
    std::string found, readError;
    const std::string kindCode(kind.code);
    if (Clipboard::GetXML(kindCode, found, readError) && !found.empty()) {
      code = kindCode;
      xml = std::move(found);
      error.clear();
      return true;
    }
    if (error.empty()) error = readError;
  }
  return false;
}
