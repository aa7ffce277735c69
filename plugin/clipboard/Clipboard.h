// Reading and writing the system clipboard: FileMaker XML under the type names of its kind, and plain text. Every
// operation returns false and sets `error` when it fails; `error` is never cleared. FileMaker's main thread only.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace Clipboard {

/// "Mac-" and the code.
std::string BuildClipboardType(const std::string& code);

/// Replaces the clipboard by the unchanged bytes of `xml`, under every type name of the kind `code` and as plain text.
/// After a failure the clipboard may hold a part of it.
bool SetXML(const std::string& code, const std::string& xml, std::string& error);

/// The XML of the kind `code`, "" when the clipboard has none; always true. A four-byte header that the host may have
/// put in front is dropped.
bool GetXML(const std::string& code, std::string& xml, std::string& error);

/// Differs whenever the clipboard has been written to since the last call, by whichever program; only equality means
/// anything. Nothing where the system does not report changes. Costs microseconds.
std::optional<std::uint64_t> ChangeCount();

/// The names of all types on the clipboard, in its order. Reads no data.
std::vector<std::string> Types();

/// The names of all types on the clipboard, each followed by a line feed; always true.
bool GetFormats(std::string& list, std::string& error);

/// The clipboard's plain text as UTF-8, "" when it has none; always true.
bool GetText(std::string& text, std::string& error);

/// Replaces the clipboard by plain text. Text that is not UTF-8 fails and leaves the clipboard unchanged.
bool SetText(const std::string& text, std::string& error);

}  // namespace Clipboard
