#include "output/DesignFolder.h"

#include <algorithm>
#include <fstream>
#include <iterator>
#include <map>
#include <set>
#include <sstream>
#include <system_error>
#include <vector>

#include "canonical/Properties.h"
#include "design/Names.h"

namespace solution {
namespace {

namespace fs = std::filesystem;

constexpr const char* kManifest = "varnix-export.txt";
constexpr std::size_t kLongestName = 150;  // bytes; file systems allow 255, and an id may follow

/// Thrown within this file.
struct Failure {
  std::string reason;
};

/// A name that is a valid file name on every system.
std::string FileName(std::string_view name) {
  std::string file;
  for (const char c : name) {
    const bool isForbidden =
        static_cast<unsigned char>(c) < 0x20 || std::string_view("/\\:*?\"<>|").find(c) != std::string_view::npos;
    file += isForbidden ? '_' : c;
  }
  if (file.size() > kLongestName) {
    std::size_t end = kLongestName;
    while ((static_cast<unsigned char>(file[end]) & 0xC0) == 0x80) --end;  // not within a character
    file.resize(end);
  }
  while (!file.empty() && (file.back() == '.' || file.back() == ' ')) file.back() = '_';
  if (file.empty() || file.front() == '.') file.insert(0, "_");
  return file;
}

std::string Directory(const Element& element) {
  std::string directory;
  for (const Element* parent = element.parent; parent != nullptr; parent = parent->parent) {
    directory.insert(0, FileName(parent->name) + '/');
  }
  return std::string(NamesOf(element.kind).plural) + '/' + directory;
}

// The path of every element, below the folder. Elements with the same name in one directory are distinguished by id.
std::map<std::string, const Element*> Paths(const Design& design) {
  std::map<std::string, std::vector<const Element*>> byName;
  for (const Element& element : design.elements()) {
    const std::string name = element.name.empty() ? DisplayName(element) : std::string(element.name);
    byName[Directory(element) + FileName(name)].push_back(&element);
  }
  std::map<std::string, std::size_t> sharing;  // systems differ in whether case matters
  for (const auto& [path, elements] : byName) sharing[FoldCase(path)] += elements.size();
  std::map<std::string, const Element*> paths;
  for (const auto& [path, elements] : byName) {
    for (const Element* element : elements) {
      const bool isAlone = sharing[FoldCase(path)] == 1;
      paths[path + (isAlone ? "" : " - " + std::to_string(element->id)) + ".txt"] = element;
    }
  }
  return paths;
}

std::set<std::string> ReadManifest(const fs::path& folder) {
  std::set<std::string> files;
  std::ifstream stream(folder / kManifest);
  for (std::string line; std::getline(stream, line);) {
    const fs::path path(line);
    const bool isInside = path.is_relative() && std::find(path.begin(), path.end(), "..") == path.end();
    if (isInside && path.extension() == ".txt") files.insert(line);
  }
  return files;
}

void WriteFile(const fs::path& path, const std::string& content) {
  std::ifstream current(path, std::ios::binary);
  if (current) {
    const std::string before((std::istreambuf_iterator<char>(current)), std::istreambuf_iterator<char>());
    if (before == content) return;
  }
  fs::create_directories(path.parent_path());
  std::ofstream stream(path, std::ios::binary | std::ios::trunc);
  if (!(stream << content).flush()) throw Failure{"cannot be written: " + path.string()};
}

void WriteManifest(const fs::path& folder, const std::set<std::string>& files) {
  std::string content;
  for (const std::string& file : files) content += file + '\n';
  WriteFile(folder / kManifest, content);
}

void CheckFolder(const fs::path& folder) {
  if (!fs::exists(folder)) return;
  if (!fs::is_directory(folder)) throw Failure{"is not a folder"};
  if (fs::exists(folder / kManifest)) return;
  for (const auto& entry : fs::directory_iterator(folder)) {
    if (!entry.path().filename().string().starts_with('.')) {
      throw Failure{"contains other files (" + entry.path().filename().string() + "): choose an empty folder"};
    }
  }
}

// Removes the file and the directories that it leaves empty.
void Remove(const fs::path& folder, const std::string& file) {
  fs::remove(folder / file);
  std::error_code ignored;
  for (fs::path parent = fs::path(file).parent_path(); !parent.empty(); parent = parent.parent_path()) {
    if (!fs::remove(folder / parent, ignored)) return;
  }
}

void Write(const Design& design, const fs::path& folder, const Progress& progress) {
  CheckFolder(folder);
  fs::create_directories(folder);
  const auto paths = Paths(design);
  const std::set<std::string> before = ReadManifest(folder);
  std::set<std::string> files;
  for (const auto& [path, unused] : paths) files.insert(path);
  // Until everything is written, the list names the files of both exports, so that none is lost after an interruption.
  std::set<std::string> both = before;
  both.insert(files.begin(), files.end());
  WriteManifest(folder, both);
  std::size_t done = 0;
  for (const auto& [path, element] : paths) {
    if (progress) progress(done++, paths.size());
    WriteFile(folder / path, CanonicalText(design, *element));
  }
  for (const std::string& file : before) {
    if (files.count(file) == 0) Remove(folder, file);
  }
  WriteManifest(folder, files);
  if (progress) progress(paths.size(), paths.size());
}

}  // namespace

bool WriteDesignFolder(const Design& design, const fs::path& folder, std::string& error, const Progress& progress) {
  try {
    Write(design, folder, progress);
    return true;
  } catch (const Failure& failure) {
    error = folder.string() + ' ' + failure.reason;
  } catch (const fs::filesystem_error& failure) {
    error = folder.string() + ": " + failure.what();
  }
  return false;
}

}  // namespace solution
