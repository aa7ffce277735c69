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
constexpr int kDeepest = 500;  // real layouts reach about 40
constexpr std::size_t kLargestFile = std::size_t{1} << 30;

// Carriage returns are data in an export, so line endings stay as they are. As a fragment, so that text outside the
// root is found instead of skipped.
constexpr unsigned kParseOptions = pugi::parse_cdata | pugi::parse_escapes | pugi::parse_fragment;
constexpr const char* kWhiteSpace = " \t\r\n";

std::string Prepare(std::string bytes, std::vector<std::string>& notes) {
  std::string text = DecodeExport(std::move(bytes), notes);
  if (text.empty()) throw Refusal{"is empty"};
  if (const std::size_t sections = EscapeCdataInAttributes(text); sections > 0) {
    notes.push_back(
        "has " + std::to_string(sections) +
        " CDATA section(s) inside attribute values, as FileMaker up to 19.4 writes some comments; they were "
        "read as text");
  }
  text += '\n';  // the parser skips a last character that belongs to no tag
  return text;
}

}  // namespace

Document::Document(std::string bytes) : text_(Prepare(std::move(bytes), notes)), lines_(text_) {
  Parse();
  CheckDepth();
  CheckRoot();
}

Refusal Document::Explain(const Damage& damage) const {
  const auto offset = static_cast<std::size_t>(damage.where.offset_debug());
  return {"is damaged in line " + std::to_string(lines_.LineOf(offset)) + ": " + damage.reason};
}

void Document::Parse() {
  const auto result = document_.load_buffer_inplace(text_.data(), text_.size(), kParseOptions, pugi::encoding_utf8);
  if (result.status == pugi::status_out_of_memory) throw std::bad_alloc();
  if (!result) {
    const auto line = lines_.LineOf(static_cast<std::size_t>(result.offset));
    throw Refusal{"is not well-formed XML in line " + std::to_string(line) + ": " + result.description()};
  }
  if (!root()) throw Refusal{"is not XML"};
  for (const pugi::xml_node node : document_.children()) {
    if (node == root()) continue;
    const auto offset = static_cast<std::size_t>(node.offset_debug()) + std::strspn(node.value(), kWhiteSpace);
    throw Refusal{"has content outside the root element in line " + std::to_string(lines_.LineOf(offset))};
  }
}

void Document::CheckDepth() const {
  int depth = 0;
  for (pugi::xml_node node = root(); node;) {
    if (depth > kDeepest) throw Explain({node, "elements are nested too deeply"});
    if (const pugi::xml_node child = node.first_child()) {
      node = child;
      ++depth;
      continue;
    }
    while (node != root() && !node.next_sibling()) {
      node = node.parent();
      --depth;
    }
    node = node == root() ? pugi::xml_node() : node.next_sibling();
  }
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
