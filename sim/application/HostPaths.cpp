#include "application/HostPaths.h"

#include <cstdlib>
#include <filesystem>

#include "calc/Unicode.h"

namespace sim {

namespace {

constexpr std::u16string_view kVolume = u"/Macintosh HD";
constexpr std::u16string_view kSchemes[] = {u"filemac:", u"file:"};

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

std::string HomeDirectory() {
  const char* home = std::getenv("HOME");
  return home != nullptr && *home != '\0' ? home : "/";
}

const std::string& TemporaryDirectory() {
  static const TemporaryFolder folder;
  return folder.path;
}

}  // namespace sim
