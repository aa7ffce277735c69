#include "bridge/ClipboardUpkeep.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <limits>
#include <optional>
#include <string>
#include <vector>

#include "clipboard/Clipboard.h"
#include "clipboard/ClipboardTypes.h"
#include "core/Clock.h"
#include "core/State.h"

namespace {

constexpr std::int64_t kPrepareIntervalMs = 500;
// Other programs clear the clipboard first and add to it later. The system may not report the additions as a change.
constexpr std::int64_t kAdditionIntervalMs = 500;
constexpr std::int64_t kNever = std::numeric_limits<std::int64_t>::max();

// Marks content of another device. Reading it makes macOS fetch it, with a progress window.
constexpr char kRemoteClipboard[] = "com.apple.is-remote-clipboard";

enum class Found {
  kNothingToDo,
  kIncomplete,  // no text, or a FileMaker type without its data
  kUnmirrored,  // FileMaker XML that could not be written back
  kUnprepared,  // FileMaker XML as text that is not due yet, or could not be written
};

// Needs no destructor, so its order of destruction does not matter.
struct LastLook {
  std::optional<std::uint64_t> change;  // the clipboard's, read before its content
  std::int64_t changedMs = 0;           // when an idle call first saw it
  std::int64_t lookedMs = 0;
  std::int64_t pauseMs = 0;  // until the next look, unless there is another change
  std::size_t types = 0;     // hash of the type names
  Found found = Found::kIncomplete;
};
LastLook g_lastLook;

std::size_t HashOf(const std::string& bytes) { return std::hash<std::string>{}(bytes); }

std::size_t HashOf(const std::vector<std::string>& names) {
  std::string lines;
  for (const auto& name : names) lines += name + '\n';
  return HashOf(lines);
}

// Writes FileMaker objects that the clipboard holds without their text back under every name.
Found Mirror() {
  std::string type, xml, error;
  if (!ProbeFileMakerClipboardXML(type, xml, error)) return Found::kIncomplete;
  const std::size_t xmlHash = HashOf(xml);
  const std::size_t hash = HashOf(type + '\n' + std::to_string(xmlHash));  // of the hash: the XML may be large
  if (hash == g_lastMirroredClipboardHash) return Found::kNothingToDo;
  if (!Clipboard::SetXML(type, xml, error)) return Found::kUnmirrored;
  g_lastMirroredClipboardHash = hash;
  g_lastPreparedClipboardHash = xmlHash;
  return Found::kNothingToDo;
}

// True if the clipboard holds `text` as FileMaker objects, too.
bool IsPasteable(const std::string& text, const std::vector<std::string>& types) {
  std::string type, xml, error;
  return IncludeFileMakerType(types) && ProbeFileMakerClipboardXML(type, xml, error) && xml == text;
}

Found Prepare(const std::string& text, const std::vector<std::string>& types, bool isDue) {
  const std::size_t hash = HashOf(text);
  if (hash == g_lastPreparedClipboardHash) return Found::kNothingToDo;
  if (!isDue) return Found::kUnprepared;
  // Written again, a script with its steps would become only steps: the kind is a guess from the XML.
  if (IsPasteable(text, types)) return Found::kNothingToDo;
  std::string error;
  if (!Clipboard::SetXML(DetectXmlClipboardType(text), text, error)) return Found::kUnprepared;
  g_lastPreparedClipboardHash = hash;
  return Found::kNothingToDo;
}

// Reads and searches the text once for both purposes: what mirroring has written needs no preparation.
Found Look(const std::vector<std::string>& types, bool prepareIsDue) {
  if (std::find(types.begin(), types.end(), kRemoteClipboard) != types.end()) return Found::kNothingToDo;
  std::string text, error;
  Clipboard::GetText(text, error);
  if (HoldsSnippet(text)) return Prepare(text, types, prepareIsDue);
  // A probe asks every item for every name, and each file copied in the Finder is an item.
  if (IncludeFileMakerType(types)) return Mirror();
  return text.empty() ? Found::kIncomplete : Found::kNothingToDo;
}

std::int64_t PauseAfter(Found found, bool typesStay, std::int64_t ageMs, std::int64_t sincePrepareMs) {
  switch (found) {
    case Found::kIncomplete:  // less and less often, because a slow owner makes FileMaker wait
      return std::max(ageMs, kAdditionIntervalMs);
    case Found::kUnmirrored:
      return 0;
    case Found::kUnprepared:
      return kPrepareIntervalMs - sincePrepareMs;
    case Found::kNothingToDo:
      break;
  }
  return typesStay ? kNever : kAdditionIntervalMs;
}

}  // namespace

void KeepClipboardConvertible() {
  const std::int64_t now = SteadyMilliseconds();
  const bool prepareIsDue = now - g_lastClipboardPrepareMs >= kPrepareIntervalMs;
  if (prepareIsDue) g_lastClipboardPrepareMs = now;

  LastLook look = g_lastLook;
  const auto change = Clipboard::ChangeCount();
  const bool isChanged = !change || change != look.change;
  if (!isChanged && now - look.lookedMs < look.pauseMs) return;

  const auto types = Clipboard::Types();
  const std::size_t typesHash = HashOf(types);
  const bool typesStay = !isChanged && typesHash == look.types;
  if (isChanged) look.changedMs = now;
  if (!typesStay || look.found != Found::kNothingToDo) look.found = Look(types, prepareIsDue);
  look.change = change;
  look.lookedMs = now;
  look.types = typesHash;
  look.pauseMs = PauseAfter(look.found, typesStay, now - look.changedMs, now - g_lastClipboardPrepareMs);
  g_lastLook = look;  // not if an exception ended the look: then the next call looks again
}
