// Opens an export: its bytes, its encoding, its XML and its root; the catalogs are read elsewhere.
#include "solution/SolutionReader.h"

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

#include "calc/Unicode.h"
#include "solution/Catalogs.h"
#include "solution/ExportText.h"
#include "solution/ExportXml.h"

namespace sim {
namespace {

using std::operator""sv;

constexpr std::string_view kSupportedVersions = "2.";
constexpr std::size_t kChunk = 1 << 20;

// Carriage returns are data in an export, so line ends are left alone. A fragment may hold text outside its root, which
// would else be passed over.
constexpr unsigned kParseOptions =
    pugi::parse_cdata | pugi::parse_escapes | pugi::parse_wconv_attribute | pugi::parse_fragment;
constexpr const char* kBlanks = " \t\r\n";
constexpr std::string_view kLanguage = "English";  // of the formulas that can be calculated

std::string OneLine(std::string text) {
  std::replace_if(
      text.begin(), text.end(), [](unsigned char byte) { return byte < 0x20; }, ' ');
  return text;
}

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

/// Parses in place: `text` is destroyed and must outlive `document`. Throws Damage for malformed XML.
bool ParseXml(std::string& text, pugi::xml_document& document, std::string& reason) {
  text += '\n';  // the parser would pass over a last character that is no tag's
  const auto result = document.load_buffer_inplace(text.data(), text.size(), kParseOptions, pugi::encoding_utf8);
  if (result.status == pugi::status_out_of_memory) throw std::bad_alloc();
  if (!result) throw xml::Damage{result.offset, result.description()};
  const pugi::xml_node root = document.document_element();
  if (!root) {
    reason = "is not XML";
    return false;
  }
  for (const pugi::xml_node node : document.children()) {
    if (node == root) continue;
    const auto blanks = static_cast<std::ptrdiff_t>(std::strspn(node.value(), kBlanks));
    throw xml::Damage{node.offset_debug() + blanks, "content outside the root element"};
  }
  return true;
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

void ReadDesign(pugi::xml_node root, Solution& solution) {
  solution.fileName = xml::Text(root.attribute("File"));
  solution.name = WithoutExtension(solution.fileName);
  const std::string language = root.attribute("locale").as_string(kLanguage.data());
  if (language != kLanguage) {
    solution.notes.push_back("was saved by a FileMaker in " + language +
                             ": names and scripts can be used, but functions in its formulas are spelled in that "
                             "language and fail; save it with an English FileMaker to calculate them");
  }
  const pugi::xml_node design = root.child("Structure").child("AddAction");
  ReadTables(design, solution);
  ReadLists(design, solution);
  ReadScripts(design, solution);
  ReadSecurity(design, solution);
  ReadOpening(root.child("Metadata").child("AddAction"), solution);
}

bool ReadExport(std::string text, const std::string& path, Solution& solution, std::string& reason) {
  Solution result;
  if (!DecodeExport(text, reason, result.notes)) return false;
  if (text.empty()) {
    reason = "is empty";
    return false;
  }
  const LineIndex lines(text);
  try {
    pugi::xml_document document;
    if (!ParseXml(text, document, reason) || !CheckRoot(document.document_element(), reason)) return false;
    ReadDesign(document.document_element(), result);
  } catch (const xml::Damage& damage) {
    const auto line = lines.LineOf(static_cast<std::size_t>(damage.offset));
    reason = "is malformed in line " + std::to_string(line) + ": " + damage.reason;
    return false;
  }
  result.path = path;
  for (std::string& note : result.notes) note = OneLine(path + " " + note);
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
  error = OneLine(path + " " + reason);
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
