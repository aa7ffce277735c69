// Conversions between FileMaker paths, which begin with a volume, and the machine's own.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace sim {

/// The FileMaker form of an absolute path: "/Macintosh HD" and the path.
std::u16string FileMakerPath(const std::string& path);

/// The machine's path for a path in a script step, which may start with "file:" or "filemac:", and is either absolute
/// with its volume or relative to `folder`.
std::string MachinePath(std::u16string_view fileMakerPath, const std::string& folder);

/// The absolute path of the folder that holds `path`.
std::string FolderOf(const std::string& path);

/// An absolute path of the machine in one of wrapper::PathFormat, UTF-8. nullopt for a relative path, and for Windows,
/// which has no paths here.
std::optional<std::string> FormatPath(const std::string& path, int format);
/// Reads what FormatPath writes; a URL may name localhost.
std::optional<std::string> ParsePath(std::string_view text, int format);

/// The user's home.
std::string HomeDirectory();

/// This process's own folder for temporary files, created at the first call and removed with its contents at exit. ""
/// when it cannot be created.
const std::string& TemporaryDirectory();

}  // namespace sim
