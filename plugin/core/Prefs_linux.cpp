// The settings in the user's configuration directory: one file per setting, named after it, which holds only its text.
#include <fcntl.h>
#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <optional>
#include <string_view>

#include "Utf8.h"
#include "core/FileDescriptor.h"
#include "core/Prefs.h"

namespace {

constexpr char kDirectory[] = "/varnix/";
constexpr std::size_t kLongestText = std::size_t{1} << 20;
constexpr std::size_t kMaxPasswdEntryBytes = std::size_t{1} << 16;

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

/// The settings' folder, ending in a slash; "" for a user without a home.
std::string StoreDirectory() {
  if (const std::string config = Absolute(getenv("XDG_CONFIG_HOME")); !config.empty()) return config + kDirectory;
  const std::string home = HomeDirectory();
  return home.empty() ? "" : home + "/.config" + kDirectory;
}

/// Makes private directories, regardless of the umask. A failure shows when a file is created.
void MakeDirectories(const std::string& path) {
  for (std::size_t slash = path.find('/', 1); slash != path.npos; slash = path.find('/', slash + 1)) {
    const std::string directory = path.substr(0, slash);
    if (mkdir(directory.c_str(), 0700) == 0) chmod(directory.c_str(), 0700);
  }
}

/// The bytes of the file; nothing when it is missing, cannot be read or cannot have been written by Save.
std::optional<std::string> ReadFile(const std::string& path) {
  // Without blocking, in case it is a FIFO.
  const FileDescriptor file(open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY));
  struct stat info;
  if (!file.IsOpen() || fstat(file.get(), &info) != 0 || !S_ISREG(info.st_mode)) return std::nullopt;
  if (static_cast<std::size_t>(info.st_size) > kLongestText) return std::nullopt;
  std::string bytes(static_cast<std::size_t>(info.st_size), '\0');
  for (std::size_t used = 0; used < bytes.size();) {
    const ssize_t count = read(file.get(), &bytes[used], bytes.size() - used);
    if (count == 0 || (count < 0 && errno != EINTR)) return std::nullopt;
    if (count > 0) used += static_cast<std::size_t>(count);
  }
  return bytes;
}

bool WriteAll(const FileDescriptor& file, std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t count = write(file.get(), bytes.data(), bytes.size());
    if (count > 0) bytes.remove_prefix(static_cast<std::size_t>(count));
    if (count < 0 && errno != EINTR) return false;
  }
  return true;
}

/// Replaces whatever is at this path with a file that holds `bytes` and that only its owner may read. A symbolic link
/// is replaced, not followed. On failure the old file stays. Once this returns, a power failure loses nothing.
bool ReplaceFile(const std::string& path, std::string_view bytes) {
  std::string temporary = path + ".XXXXXX";
  const FileDescriptor file(mkostemp(temporary.data(), O_CLOEXEC));
  if (!file.IsOpen()) return false;
  const bool replaced = fchmod(file.get(), 0600) == 0 && WriteAll(file, bytes) && fsync(file.get()) == 0 &&
                        rename(temporary.c_str(), path.c_str()) == 0;
  if (!replaced) unlink(temporary.c_str());
  const FileDescriptor directory(open(path.substr(0, path.rfind('/')).c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  if (directory.IsOpen()) fsync(directory.get());
  return replaced;
}

// Earlier versions kept both settings in one file, as lines "name=value" with backslash and line feed written as "\\"
// and "\n". It is read for a setting that has no file of its own yet, and removed once both have one.
constexpr char kOldFile[] = "preferences";

std::optional<std::string> OldValue(const std::string& directory, std::string_view name) {
  const std::string lines = '\n' + ReadFile(directory + kOldFile).value_or("");
  const std::string start = '\n' + std::string(name) + '=';
  std::size_t at = lines.find(start);
  const std::size_t end = at == lines.npos ? at : lines.find('\n', at += start.size());
  if (end == lines.npos) return std::nullopt;
  std::string value;
  for (; at < end; ++at) {
    const bool isEscape = lines[at] == '\\';
    if (isEscape) ++at;
    value += isEscape && lines[at] == 'n' ? '\n' : lines[at];
  }
  return value;
}

void RemoveUnneededOldFile(const std::string& directory) {
  for (const char* name : {Prefs::kBaseUrlKey, Prefs::kLicenseKeyKey}) {
    if (access((directory + name).c_str(), F_OK) != 0) return;
  }
  unlink((directory + kOldFile).c_str());
}

void Save(const char* name, std::string_view value) {
  const std::string directory = StoreDirectory();
  if (directory.empty() || value.size() > kLongestText || !IsUtf8(value)) return;
  MakeDirectories(directory);
  if (ReplaceFile(directory + name, value)) RemoveUnneededOldFile(directory);
}

std::string Load(const char* name) {
  const std::string directory = StoreDirectory();
  if (directory.empty()) return "";
  std::optional<std::string> value = ReadFile(directory + name);
  if (!value) value = OldValue(directory, name);
  const bool isText = value && IsUtf8(*value) && value->find('\0') == value->npos;
  return isText ? *value : "";
}

}  // namespace

void Prefs::SaveBaseUrl(const std::string& url) { Save(kBaseUrlKey, url.c_str()); }
void Prefs::SaveLicenseKey(const std::string& key) { Save(kLicenseKeyKey, key.c_str()); }

std::string Prefs::LoadBaseUrl() { return Load(kBaseUrlKey); }
std::string Prefs::LoadLicenseKey() { return Load(kLicenseKeyKey); }
