// Opening an export: its bytes, its XML and its root.
#include "export/Document.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <memory>
#include <new>
#include <utility>

namespace solution {
namespace {

constexpr std::string_view kSupportedVersions = "2.";
constexpr std::size_t kChunk = 1 << 20;
constexpr std::size_t kLargestFile = std::size_t{1} << 30;

std::string Prepare(std::string bytes, std::vector<std::string>& notes) {
  std::string text = DecodeExport(std::move(bytes), notes);
  if (text.empty()) throw Refusal{"is empty"};
  if (const std::size_t sections = EscapeCdataInAttributes(text); sections > 0) {
    notes.push_back(
        "has " + std::to_string(sections) +
        " CDATA section(s) inside attribute values, as FileMaker up to 19.4 writes some comments; they were "
        "read as text");
  }
  return text;
}

}  // namespace

Document::Document(std::string bytes) : xml_(Prepare(std::move(bytes), notes)) { CheckRoot(); }

Refusal Document::Explain(const Damage& damage) const {
  return {"is damaged in line " + std::to_string(xml_.LineOf(damage.where)) + ": " + damage.reason};
}

void Document::CheckRoot() const {
  const std::string_view name = root().name();
  const std::string_view version = Attribute("version");
  // FMDynamicTemplate is the name that the first version used.
  if (name != "FMSaveAsXML" && name != "FMDynamicTemplate") {
    throw Refusal{"is not a \"Save a Copy as XML\" export: its root element is " + std::string(name)};
  }
  if (!version.starts_with(kSupportedVersions)) {
    throw Refusal{"has the format version \"" + std::string(version) + "\", which is not supported"};
  }
  if (Attribute("split_catalogs") == "True") {
    throw Refusal{"is split into one file per catalog, which is not supported: save it as one file"};
  }
  if (!Part("Structure")) throw Refusal{"contains no design: the element Structure/AddAction is missing"};
  if (Attribute("File").empty()) throw Refusal{"does not name its FileMaker file: the attribute File is missing"};
}

std::string ReadFile(const std::string& path) {
  std::error_code failure;
  const auto status = std::filesystem::status(path, failure);
  if (std::filesystem::exists(status) && !std::filesystem::is_regular_file(status)) {
    throw Refusal{"is not a regular file"};
  }
  const std::unique_ptr<std::FILE, int (*)(std::FILE*)> file(std::fopen(path.c_str(), "rb"), std::fclose);
  if (!file) throw Refusal{"cannot be opened: " + std::string(std::strerror(errno))};
  std::string bytes;
  const auto size = std::filesystem::file_size(path, failure);
  if (!failure) bytes.reserve(std::min<std::size_t>(size, kLargestFile) + kChunk);
  std::size_t got = kChunk;
  while (got == kChunk && bytes.size() <= kLargestFile) {
    const std::size_t before = bytes.size();
    bytes.resize(before + kChunk);
    got = std::fread(bytes.data() + before, 1, kChunk, file.get());
    bytes.resize(before + got);
  }
  if (std::ferror(file.get()) != 0) throw Refusal{"cannot be read: " + std::string(std::strerror(errno))};
  return bytes;
}

}  // namespace solution
