#include "host/AppleScript.h"

namespace {

std::string QuotesEscaped(const std::string& path) {
  std::string escaped;
  escaped.reserve(path.size());
  for (const char c : path) {
    if (c == '"') escaped += '\\';
    escaped += c;
  }
  return escaped;
}

}  // namespace

bool AppleScript::GetFrontDocumentName(std::string& name, std::string& error) {
  return Run(
      "tell application \"FileMaker Pro\"\n"
      "    get name of front document\n"
      "end tell",
      name, error);
}

bool AppleScript::SaveFrontDocumentAsXML(const std::string& posixPath, std::string& error) {
  std::string noValue;
  return Run(
      "tell application \"FileMaker Pro\"\n"
      "    save front document in (POSIX file \"" +
          QuotesEscaped(posixPath) +
          "\") as \"XML copy\"\n"
          "end tell",
      noValue, error);
}

bool AppleScript::ExportFrontDocumentAsXML(const std::string& posixPath, std::string& xml, std::string& error) {
  return Run("set _varnixPath to \"" + QuotesEscaped(posixPath) +
                 "\"\n"
                 "tell application \"FileMaker Pro\"\n"
                 "    save front document in (POSIX file _varnixPath) as \"XML copy\"\n"
                 "end tell\n"
                 "set _xml to do shell script \"/bin/cat \" & quoted form of _varnixPath\n"
                 "do shell script \"/bin/rm -f \" & quoted form of _varnixPath\n"
                 "return _xml",
             xml, error);
}
