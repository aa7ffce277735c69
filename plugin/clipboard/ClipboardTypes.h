// FileMaker's kinds of clipboard XML: their codes, the pasteboard type names that the host may use for each, and the
// guess of a kind from XML text. ProbeFileMakerClipboardXML reads the pasteboard: FileMaker's main thread only. The
// others are safe on any thread.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

/// Appends `type` unless it is empty or already in `list`.
void AddUniqueType(std::vector<std::string>& list, const std::string& type);

/// The type names under which the host may read or write the kind `code`, in the order in which they are tried. Any
/// text is accepted as a code; an unknown one gets the generic names only.
std::vector<std::string> BuildClipboardTypeCandidates(const std::string& code);

/// The code of the kind that `xml` seems to be; never empty.
std::string DetectXmlClipboardType(const std::string& xml);

/// Whether `text` contains "<fmxmlsnippet", which marks plain text as FileMaker XML, at `begin` or later.
bool HoldsSnippet(const std::string& text, std::size_t begin = 0);

/// Whether one of `types`, the names that the pasteboard reports, can be that of FileMaker XML of any kind.
bool IncludeFileMakerType(const std::vector<std::string>& types);

/// Finds the first kind for which the pasteboard has XML, and sets `code` and `xml`. When there is none, returns false
/// with both unchanged. `error` is then the first error of a read, if there was any; success clears it.
bool ProbeFileMakerClipboardXML(std::string& code, std::string& xml, std::string& error);
