// The settings in one file of the user's configuration directory, one line each: name=value, where a backslash and a
// line end in the value are written as "\\" and "\n".
#include "core/Prefs.h"

#include <fcntl.h>
#include <pwd.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <optional>
#include <string_view>
#include <thread>

#include "Utf8.h"
#include "core/FileDescriptor.h"
#include "host/FileIO.h"

namespace {

constexpr char kDirectory[] = "/varnix";
constexpr char kFile[] = "/preferences";
constexpr std::size_t kMaxFileBytes = std::size_t{1} << 20;  // a larger file is none of ours
constexpr std::size_t kMaxPasswdEntryBytes = std::size_t{1} << 16;
constexpr int kLockAttempts = 200;
constexpr std::chrono::milliseconds kLockPause{10};

/// `path`, or "" when it is null or relative.
std::string Absolute(const char* path) { return path != nullptr && path[0] == '/' ? path : ""; }

std::string HomeDirectory() {
  if (const std::string home = Absolute(getenv("HOME")); !home.empty()) return home;
  std::string buffer(kMaxPasswdEntryBytes, '\0');
  passwd entry;
  passwd* found = nullptr;
  getpwuid_r(getuid(), &entry, buffer.data(), buffer.size(), &found);
  return found == nullptr ? "" : Absolute(found->pw_dir);
}

/// "" for a user without a home.
std::string StoreDirectory() {
  if (const std::string config = Absolute(getenv("XDG_CONFIG_HOME")); !config.empty()) return config + kDirectory;
  const std::string home = HomeDirectory();
  return home.empty() ? "" : home + "/.config" + kDirectory;
}

/// A failure shows when the directory is opened.
void MakeDirectories(const std::string& path) {
  for (std::size_t slash = 0; slash != std::string::npos;) {
    slash = path.find('/', slash + 1);
    mkdir(path.substr(0, slash).c_str(), 0700);
  }
}

/// What the file holds, "" when there is none; nothing when it cannot be read or is no file of ours.
std::optional<std::string> StoredLines(const std::string& path) {
  struct stat info;
  if (stat(path.c_str(), &info) != 0) return errno == ENOENT ? std::make_optional(std::string()) : std::nullopt;
  std::string lines;
  std::string error;
  if (static_cast<std::size_t>(info.st_size) > kMaxFileBytes || !FileIO::Read(path, lines, error)) return std::nullopt;
  return lines;
}

std::string Escaped(std::string_view value) {
  std::string escaped;
  for (const char c : value) {
    if (c == '\n' || c == '\\') escaped += '\\';
    escaped += c == '\n' ? 'n' : c;
  }
  return escaped;
}

/// Nothing when `escaped` is not what Escaped() makes of a text.
std::optional<std::string> Unescaped(std::string_view escaped) {
  std::string value;
  bool afterBackslash = false;
  for (const char c : escaped) {
    if (afterBackslash && c != 'n' && c != '\\') return std::nullopt;
    const bool opens = c == '\\' && !afterBackslash;
    if (!opens) value += afterBackslash && c == 'n' ? '\n' : c;
    afterBackslash = opens;
  }
  const bool isText = IsUtf8(value) && value.find('\0') == value.npos;
  return !afterBackslash && isText ? std::make_optional(value) : std::nullopt;
}

/// Takes the first line, with its line end, off `lines`.
std::string_view TakeLine(std::string_view& lines) {
  const std::size_t end = lines.find('\n');
  const std::string_view line = lines.substr(0, end == std::string_view::npos ? end : end + 1);
  lines.remove_prefix(line.size());
  return line;
}

bool IsLineOf(std::string_view name, std::string_view line) {
  return line.starts_with(name) && line.substr(name.size()).starts_with('=');
}

/// A last line without its line end was cut short: half a value is none.
std::string ValueOf(std::string_view name, std::string_view lines) {
  while (!lines.empty()) {
    std::string_view line = TakeLine(lines);
    if (!IsLineOf(name, line) || !line.ends_with('\n')) continue;
    line.remove_suffix(1);
    return Unescaped(line.substr(name.size() + 1)).value_or("");
  }
  return "";
}

/// Every other line stays as it is, damaged ones included; the new one comes first, so that a last line without its
/// line end stays last.
std::string WithValue(std::string_view name, std::string_view value, std::string_view lines) {
  std::string updated = std::string(name) + '=' + Escaped(value) + '\n';
  while (!lines.empty()) {
    const std::string_view line = TakeLine(lines);
    if (!IsLineOf(name, line)) updated += line;
  }
  return updated;
}

/// Between reading the old lines and renaming the new ones into place, no other process of the user may do the same, or
/// one of the two values would be lost. Released with `directory`.
bool LockOutOtherSaves(const FileDescriptor& directory) {
  for (int attempt = 0; attempt < kLockAttempts; ++attempt) {
    if (flock(directory.get(), LOCK_EX | LOCK_NB) == 0) return true;
    if (errno != EWOULDBLOCK && errno != EINTR) return true;  // a file system without locks
    std::this_thread::sleep_for(kLockPause);
  }
  return false;
}

bool WriteAll(const FileDescriptor& file, std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t count = write(file.get(), bytes.data(), bytes.size());
    if (count > 0) bytes.remove_prefix(static_cast<std::size_t>(count));
    if (count < 0 && errno != EINTR) return false;
  }
  return true;
}

void ReplaceFile(const std::string& path, std::string_view content, const FileDescriptor& directory) {
  std::string temporary = path + ".XXXXXX";
  const FileDescriptor file(mkostemp(temporary.data(), O_CLOEXEC));
  if (!file.IsOpen()) return;
  if (!WriteAll(file, content) || fsync(file.get()) != 0 || rename(temporary.c_str(), path.c_str()) != 0) {
    unlink(temporary.c_str());
    return;
  }
  fsync(directory.get());
}

void Save(std::string_view name, std::string_view value) {
  const std::string directoryPath = StoreDirectory();
  if (directoryPath.empty() || !IsUtf8(value)) return;
  MakeDirectories(directoryPath);
  const FileDescriptor directory(open(directoryPath.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  if (!directory.IsOpen() || !LockOutOtherSaves(directory)) return;

  const std::string path = directoryPath + kFile;
  const std::optional<std::string> lines = StoredLines(path);
  if (!lines) return;
  const std::string updated = WithValue(name, value, *lines);
  if (updated.size() <= kMaxFileBytes) ReplaceFile(path, updated, directory);
}

std::string Load(std::string_view name) {
  const std::string directoryPath = StoreDirectory();
  if (directoryPath.empty()) return "";
  return ValueOf(name, StoredLines(directoryPath + kFile).value_or(""));
}

}  // namespace

void Prefs::SaveBaseUrl(const std::string& url) { Save(kBaseUrlKey, url.c_str()); }
void Prefs::SaveLicenseKey(const std::string& key) { Save(kLicenseKeyKey, key.c_str()); }

std::string Prefs::LoadBaseUrl() { return Load(kBaseUrlKey); }
std::string Prefs::LoadLicenseKey() { return Load(kLicenseKeyKey); }
