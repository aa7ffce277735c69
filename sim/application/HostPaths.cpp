#include "application/HostPaths.h"

#include <unistd.h>

#include <charconv>
#include <cstdlib>
#include <filesystem>

#include "calc/Unicode.h"
#include "wrapper/Host.h"

namespace sim {

namespace {

constexpr std::u16string_view kVolume = u"/Macintosh HD";
constexpr std::u16string_view kSchemes[] = {u"filemac:", u"file:"};

constexpr std::string_view kFileUrl = "file://";
constexpr std::string_view kThisMachine = "localhost";

constexpr std::string_view kUnescaped = "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789-._~/";

std::string UrlEncoded(const std::string& path) {
  constexpr char kDigits[] = "0123456789ABCDEF";
  std::string url;
  for (const char c : path) {
    if (kUnescaped.find(c) != kUnescaped.npos) {
      url += c;
    } else {
      const auto byte = static_cast<unsigned char>(c);
      url += {'%', kDigits[byte >> 4], kDigits[byte & 15]};
    }
  }
  return url;
}

std::string UrlDecoded(std::string_view url) {
  std::string path;
  for (std::size_t at = 0; at < url.size(); ++at) {
    unsigned byte = 0;
    const bool isCode = url[at] == '%' && at + 2 < url.size() &&
                        std::from_chars(url.data() + at + 1, url.data() + at + 3, byte, 16).ptr == url.data() + at + 3;
    path += isCode ? static_cast<char>(byte) : url[at];
    if (isCode) at += 2;
  }
  return path;
}

struct TemporaryFolder {
  TemporaryFolder() {
    std::error_code failure;
    auto pattern = (std::filesystem::temp_directory_path(failure) / "fmsim-XXXXXX").string();
    if (!failure && mkdtemp(pattern.data()) != nullptr) path = pattern;
  }
  ~TemporaryFolder() {
    std::error_code ignored;
    if (!path.empty()) std::filesystem::remove_all(path, ignored);
  }
  std::string path;
};

}  // namespace

std::u16string FileMakerPath(const std::string& path) { return std::u16string(kVolume) + calc::ToUtf16(path); }

std::string MachinePath(std::u16string_view fileMakerPath, const std::string& folder) {
  for (const auto scheme : kSchemes) {
    if (fileMakerPath.starts_with(scheme)) {
      fileMakerPath.remove_prefix(scheme.size());
      break;
    }
  }
  if (!fileMakerPath.starts_with(u'/')) return folder + "/" + calc::ToUtf8(fileMakerPath);
  const auto afterVolume = fileMakerPath.find(u'/', 1);
  return calc::ToUtf8(afterVolume == fileMakerPath.npos ? fileMakerPath : fileMakerPath.substr(afterVolume));
}

std::string FolderOf(const std::string& path) { return std::filesystem::absolute(path).parent_path().string(); }

std::optional<std::string> FormatPath(const std::string& path, int format) {
  if (!path.starts_with('/')) return std::nullopt;
  if (format == wrapper::kPosixPath) return path;
  if (format == wrapper::kUrlPath) return std::string(kFileUrl) + UrlEncoded(path);
  return std::nullopt;
}

std::optional<std::string> ParsePath(std::string_view text, int format) {
  const bool isUrl = format == wrapper::kUrlPath;
  if (isUrl) {
    if (!text.starts_with(kFileUrl)) return std::nullopt;
    text.remove_prefix(kFileUrl.size());
    if (text.starts_with(kThisMachine)) text.remove_prefix(kThisMachine.size());
  }
  if (!text.starts_with('/') || (!isUrl && format != wrapper::kPosixPath)) return std::nullopt;
  return isUrl ? UrlDecoded(text) : std::string(text);
}

std::string HomeDirectory() {
  const char* home = std::getenv("HOME");
  return home != nullptr && *home != '\0' ? home : "/";
}

const std::string& TemporaryDirectory() {
  static const TemporaryFolder folder;
  return folder.path;
}

}  // namespace sim
