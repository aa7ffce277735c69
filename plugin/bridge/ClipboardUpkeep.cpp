#include "bridge/ClipboardUpkeep.h"

#include <functional>
#include <string>

#include "bridge/BridgeState.h"
#include "clipboard/Clipboard.h"
#include "clipboard/ClipboardTypes.h"
#include "core/Clock.h"

namespace {

constexpr std::int64_t kPrepareIntervalMs = 500;

std::size_t HashOf(const std::string& bytes) { return std::hash<std::string>{}(bytes); }

// Writes FileMaker XML that stands on the clipboard without its text back under every name.
void Mirror() {
  std::string type, xml, error;
  if (!ProbeFileMakerClipboardXML(type, xml, error)) return;
  const std::size_t xmlHash = HashOf(xml);
  const std::size_t hash = HashOf(type + '\n' + std::to_string(xmlHash));  // the XML may be too large to be joined
  if (hash == g_lastMirroredClipboardHash) return;
  if (!Clipboard::SetXML(type, xml, error)) return;
  g_lastMirroredClipboardHash = hash;
  g_lastPreparedClipboardHash = xmlHash;
}

void Prepare(const std::string& text) {
  const std::size_t hash = HashOf(text);
  if (hash == g_lastPreparedClipboardHash) return;
  std::string error;
  if (Clipboard::SetXML(DetectXmlClipboardType(text), text, error)) g_lastPreparedClipboardHash = hash;
}

}  // namespace

void KeepClipboardConvertible() {
  // FileMaker waits for this on every idle call: the text is read and searched once for both halves. What mirroring
  // writes needs no preparation.
  std::string text, error;
  Clipboard::GetText(text, error);
  const bool isSnippet = HoldsSnippet(text);
  if (!isSnippet) Mirror();

  const std::int64_t now = SteadyMilliseconds();
  if (now - g_lastClipboardPrepareMs < kPrepareIntervalMs) return;
  g_lastClipboardPrepareMs = now;
  if (isSnippet) Prepare(text);
}
