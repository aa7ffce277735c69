// Names that come from users and the service, by rules told another way: window titles, lists, uploads and versions.
#include <curl/curl.h>

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <regex>
#include <string>
#include <vector>

#include "core/Ascii.h"
#include "core/Lines.h"
#include "net/PercentEncode.h"
#include "net/Version.h"
#include "schema/OpenFiles.h"

namespace {

void Check(bool holds) {
  if (!holds) std::abort();
}

void CheckWindowTitle(const std::string& title) {
  std::string name = title.substr(0, std::min(title.find(" ("), title.size()));
  name = name.substr(0, std::min(name.find(" - "), name.size()));
  static const std::regex extension("([^]+)\\.fmp12", std::regex::icase);
  std::smatch match;
  Check(WindowNameToFileName(title) == (std::regex_match(name, match, extension) ? match[1].str() : name));
}

void CheckLists(const std::string& text) {
  std::string joined;
  std::vector<std::string> unique;
  for (const auto line : NonEmptyLines(text)) {
    Check(!line.empty());
    joined += line;
    AddUniqueName(unique, line);
  }
  std::string rest = text;
  std::erase_if(rest, [](char c) { return c == '\r' || c == '\n'; });
  Check(joined == rest);
  for (std::size_t i = 0; i < unique.size(); ++i) {
    Check(unique[i].find_first_of("\r\n") == std::string::npos && unique[i].front() != ' ' && unique[i].back() != ' ');
    for (std::size_t j = 0; j < i; ++j) Check(!EqualIgnoringAsciiCase(unique[i], unique[j]));
  }
}

void CheckUploadName(const std::string& name) {
  const std::string encoded = PercentEncode(name);
  Check(encoded.find_first_not_of("%0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz-._~") ==
        std::string::npos);
  int size = 0;
  char* decoded = curl_easy_unescape(nullptr, encoded.data(), static_cast<int>(encoded.size()), &size);
  Check(name == std::string(decoded, static_cast<std::size_t>(size)));
  curl_free(decoded);
}

void CheckVersion(const std::string& text) {
  const auto version = ParseVersion(text);
  if (std::regex_search(text, std::regex("[0-9]{9}"))) return;  // scanf may do anything with what does not fit
  std::array<int, 3> scanned{};
  std::sscanf(text.c_str(), "%d.%d.%d", &scanned[0], &scanned[1], &scanned[2]);
  Check(version == scanned);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string text(reinterpret_cast<const char*>(data), size);
  CheckWindowTitle(text);
  CheckLists(text);
  CheckUploadName(text);
  CheckVersion(text);
  return 0;
}
