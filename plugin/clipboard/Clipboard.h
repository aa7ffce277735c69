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

/// Replaces the clipboard with the unchanged bytes of `xml`, under every type name of the kind `code` and as plain
/// text. After a failure the clipboard may hold only a part of them.
bool SetXML(const std::string& code, const std::string& xml, std::string& error);

/// Sets `xml` to the XML of the kind `code`, or "" when the clipboard has none. A four-byte header that the host may
/// have put in front is dropped. Always returns true.
bool GetXML(const std::string& code, std::string& xml, std::string& error);

/// A number that differs if any program has written to the clipboard since the last call; only equality has a meaning.
/// Nothing where the system does not report changes. Takes microseconds.
std::optional<std::uint64_t> ChangeCount();

/// The names of all types on the clipboard, in its order. Reads no data.
std::vector<std::string> Types();

/// Sets `list` to the names of all types on the clipboard, each followed by a line feed. Always returns true.
bool GetFormats(std::string& list, std::string& error);

/// Sets `text` to the clipboard's plain text as UTF-8, or "" when it has none. Always returns true.
bool GetText(std::string& text, std::string& error);

/// Replaces the clipboard with plain text. Text that is not UTF-8 fails and leaves the clipboard unchanged.
bool SetText(const std::string& text, std::string& error);

}  // namespace Clipboard
