// Turns an opened export into a Solution.
#include "solution/SolutionReader.h"

#include <algorithm>
#include <exception>
#include <utility>

#include "export/Document.h"
#include "solution/Catalogs.h"
#include "solution/ExportXml.h"

namespace sim {
namespace {

constexpr std::string_view kLanguage = "English";  // of the formulas that can be calculated

std::string OneLine(std::string text) {
  std::replace_if(
      text.begin(), text.end(), [](unsigned char byte) { return byte < 0x20; }, ' ');
  return text;
}

void ReadDesign(const solution::Document& document, Solution& result) {
  result.fileName = xml::Text(document.root().attribute("File"));
  result.name = WithoutExtension(result.fileName);
  result.notes = document.notes;
  const solution::XmlAttribute locale = document.root().attribute("locale");
  const std::string_view language = locale ? locale.value() : kLanguage;
  if (language != kLanguage) {
    result.notes.push_back("was saved by FileMaker in " + std::string(language) +
                           ": names and scripts can be used, but functions in its formulas are spelled in that "
                           "language and fail; save it with FileMaker in English to calculate them");
  }
  const solution::XmlNode design = document.Part("Structure");
  ReadTables(design, result);
  ReadLists(design, result);
  ReadScripts(design, result);
  ReadSecurity(design, result);
  ReadOpening(document.Part("Metadata"), result);
}

Solution ReadExport(std::string bytes, const std::string& path) {
  Solution result;
  const solution::Document document(std::move(bytes));
  try {
    ReadDesign(document, result);
  } catch (const solution::Damage& damage) {
    throw document.Explain(damage);
  }
  result.path = path;
  for (std::string& note : result.notes) note = OneLine(path + " " + note);
  return result;
}

/// Turns every failure of `read` into one line.
template <typename Read>
bool Report(const std::string& path, Solution& solution, std::string& error, Read read) {
  try {
    solution = read();
    return true;
  } catch (const solution::Refusal& refusal) {
    error = OneLine(path + " " + refusal.reason);
  } catch (const std::exception&) {  // only memory allocation throws
    error = OneLine(path + " is too large for the available memory");
  }
  return false;
}

}  // namespace

bool ReadSolutionBytes(std::string bytes, const std::string& path, Solution& solution, std::string& error) {
  return Report(path, solution, error, [&] { return ReadExport(std::move(bytes), path); });
}

bool ReadSolution(const std::string& path, Solution& solution, std::string& error) {
  return Report(path, solution, error, [&] { return ReadExport(solution::ReadFile(path), path); });
}

}  // namespace sim
