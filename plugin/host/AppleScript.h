// Runs AppleScript, which can do to FileMaker what its plug-in interface cannot. Everything blocks its caller until the
// script has ended; use it on the main thread, the only one on which macOS runs scripts safely.
//
// These functions are public symbols of the plug-in, which does not call them itself (cmake/exports.map, exports.txt).
//
// Texts are UTF-8. True is success. The result is written on success only, and `error` on failure only.
#pragma once

#include <string>

#pragma GCC visibility push(default)
namespace AppleScript {

/// The beginning of every error.
inline constexpr char kErrorStart[] = "ERROR (AppleScript): ";

/// Runs the script `source`; `result` is its value as text, "" when it has none.
bool Run(const std::string& source, std::string& result, std::string& error);

/// The name of FileMaker's front document.
bool GetFrontDocumentName(std::string& name, std::string& error);

/// Saves FileMaker's front document as XML at `posixPath`. AppleScript takes backslashes in the path as escapes.
bool SaveFrontDocumentAsXML(const std::string& posixPath, std::string& error);

/// The same, then moves the file's text into `xml`: the file is gone afterwards, unless it could not be read.
bool ExportFrontDocumentAsXML(const std::string& posixPath, std::string& xml, std::string& error);

}  // namespace AppleScript
#pragma GCC visibility pop
