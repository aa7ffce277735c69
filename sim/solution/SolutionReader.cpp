// Opens an export: its bytes, its encoding, its XML and its root; the catalogs are read elsewhere.
#include "sim/solution/SolutionReader.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <exception>
#include <filesystem>
#include <memory>
#include <new>
#include <pugixml.hpp>
#include <string_view>
#include <utility>

#include "sim/calc/Unicode.h"
#include "sim/solution/Catalogs.h"
#include "sim/solution/ExportText.h"
#include "sim/solution/ExportXml.h"

namespace sim {
namespace {

using std::operator""sv;

constexpr std::string_view kSupportedVersions = "2.";
constexpr std::size_t kChunk = 1 << 20;

// Carriage returns are data in an export, so line ends are left alone.
constexpr unsigned kParseOptions = pugi::parse_cdata | pugi::parse_escapes | pugi::parse_wconv_attribute;

bool ReadBytes(const std::string& path, std::string& bytes, std::string& reason) {
  std::error_code failure;
  const auto status = std::filesystem::status(path, failure);
  if (std::filesystem::exists(status) && !std::filesystem::is_regular_file(status)) {
    reason = "is not a regular file";
    return false;
  }
  const std::unique_ptr<std::FILE, int (*)(std::FILE*)> file(std::fopen(path.c_str(), "rb"), std::fclose);
  if (!file) {
    reason = "cannot be opened: " + std::string(std::strerror(errno));
    return false;
  }
  const auto size = std::filesystem::file_size(path, failure);
  if (!failure) bytes.reserve(size + kChunk);
  std::size_t got = 0;
  do {
    const std::size_t before = bytes.size();
    bytes.resize(before + kChunk);
    got = std::fread(bytes.data() + before, 1, kChunk, file.get());
    bytes.resize(before + got);
  } while (got == kChunk);
  if (std::ferror(file.get()) == 0) return true;
  reason = "cannot be read: " + std::string(std::strerror(errno));
  return false;
}

/// Parses in place: `text` is destroyed and must outlive `document`.
bool ParseXml(std::string& text, pugi::xml_document& document, std::string& reason) {
  const LineIndex lines(text);
  const auto result = document.load_buffer_inplace(text.data(), text.size(), kParseOptions, pugi::encoding_utf8);
  if (result) return true;
  if (result.status == pugi::status_out_of_memory) throw std::bad_alloc();
  if (result.status == pugi::status_no_document_element) {
    reason = "is not XML";
  } else {
    const auto line = lines.LineOf(static_cast<std::size_t>(result.offset));
    reason = "is malformed in line " + std::to_string(line) + ": " + result.description();
  }
  return false;
}

bool CheckRoot(pugi::xml_node root, std::string& reason) {
  const std::string_view name = root.name();
  const std::string_view version = root.attribute("version").value();
  // FMDynamicTemplate is what the first version to export called it.
  if (name != "FMSaveAsXML" && name != "FMDynamicTemplate") {
    reason = "is not a \"Save a Copy as XML\" export: its root element is " + std::string(name);
  } else if (!version.starts_with(kSupportedVersions)) {
    reason = "has the format version \"" + std::string(version) + "\", which is not supported";
  } else if (xml::IsTrue(root.attribute("split_catalogs"))) {
    reason = "is split into one file per catalog, which is not supported: save it as one file";
  } else if (!root.child("Structure").child("AddAction")) {
    reason = "holds no design: the element Structure/AddAction is missing";
  } else if (!*root.attribute("File").value()) {
    reason = "does not name its FileMaker file: the attribute File is missing";
  } else {
    return true;
  }
  return false;
}

bool ReadExport(std::string text, const std::string& path, Solution& solution, std::string& reason) {
  if (!DecodeExport(text, reason)) return false;
  if (text.empty()) {
    reason = "is empty";
    return false;
  }
  pugi::xml_document document;
  if (!ParseXml(text, document, reason)) return false;
  const pugi::xml_node root = document.document_element();
  if (!CheckRoot(root, reason)) return false;

  Solution result;
  result.path = path;
  result.fileName = xml::Text(root.attribute("File"));
  result.name = WithoutExtension(result.fileName);
  result.formatVersion = xml::Text(root.attribute("version"));
  result.savedBy = xml::Text(root.attribute("Source"));
  const pugi::xml_node design = root.child("Structure").child("AddAction");
  ReadTables(design, result);
  ReadLists(design, result);
  ReadScripts(design, result);
  ReadSecurity(design, result);
  ReadOpening(root.child("Metadata").child("AddAction"), result);
  solution = std::move(result);
  return true;
}

/// Runs `read`, which gives its reason for failing, and makes the one line of error of it.
template <typename Read>
bool Report(const std::string& path, std::string& error, Read read) {
  std::string reason;
  try {
    if (read(reason)) return true;
  } catch (const std::exception&) {  // nothing but the allocation of memory throws
    reason = "is too large for the memory there is";
  }
  error = path + " " + reason;
  std::replace_if(
      error.begin(), error.end(), [](unsigned char byte) { return byte < 0x20; }, ' ');
  return false;
}

}  // namespace

bool ReadSolutionBytes(std::string bytes, const std::string& path, Solution& solution, std::string& error) {
  return Report(path, error, [&](std::string& reason) { return ReadExport(std::move(bytes), path, solution, reason); });
}

bool ReadSolution(const std::string& path, Solution& solution, std::string& error) {
  return Report(path, error, [&](std::string& reason) {
    std::string bytes;
    return ReadBytes(path, bytes, reason) && ReadExport(std::move(bytes), path, solution, reason);
  });
}

}  // namespace sim
