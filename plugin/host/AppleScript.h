// Runs AppleScript, which can control FileMaker in ways that its plug-in interface cannot. Every function blocks until
// the script has ended. Main thread only: macOS runs scripts safely on no other.
//
// These functions are public symbols of the plug-in, which does not call them itself (cmake/exports.map, exports.txt).
//
// Texts are UTF-8. Each returns true on success. The result is set on success only, and `error` on failure only.
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

/// Saves FileMaker's front document as XML at `posixPath`. AppleScript treats backslashes in the path as escapes.
bool SaveFrontDocumentAsXML(const std::string& posixPath, std::string& error);

/// Saves it in the same way, then reads the file into `xml` and deletes it. The file stays if it cannot be read.
bool ExportFrontDocumentAsXML(const std::string& posixPath, std::string& xml, std::string& error);

}  // namespace AppleScript
#pragma GCC visibility pop
