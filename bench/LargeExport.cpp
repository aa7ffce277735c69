#include "LargeExport.h"

#include <sys/resource.h>

#include <pugixml.hpp>
#include <sstream>

namespace bench {

std::string LargeExport() {
  pugi::xml_document document;
  document.load_file(SAMPLE, pugi::parse_cdata | pugi::parse_escapes);
  const pugi::xml_node catalogs = document.document_element().child("Structure").child("AddAction");
  pugi::xml_node scripts = catalogs.child("ScriptCatalog"), steps = catalogs.child("StepsForScripts");
  const pugi::xml_node script = scripts.child("Script"), list = steps.child("Script");
  constexpr std::size_t kBytes = 14'000'000;
  std::size_t bytes = 0;
  for (int id = 100; bytes < kBytes; ++id) {
    pugi::xml_node copy = scripts.append_copy(script), listCopy = steps.append_copy(list);
    copy.attribute("id").set_value(id);
    copy.attribute("name").set_value(("Script " + std::to_string(id)).c_str());  // so that no two have the same text
    copy.child("UUID").text().set(id);
    listCopy.child("ScriptReference").attribute("id").set_value(id);
    for (int i = 0; i < 10; ++i) {
      for (const pugi::xml_node step : list.child("ObjectList").children())
        listCopy.child("ObjectList").append_copy(step);
    }
    if (id % 16 == 0) {
      std::ostringstream text;
      document.save(text, "\t", pugi::format_default, pugi::encoding_utf16_le);
      bytes = text.str().size();
      if (bytes >= kBytes) return text.str();
    }
  }
  return {};
}

double PeakMemory() {
  rusage usage{};
  getrusage(RUSAGE_SELF, &usage);
  return 1024.0 * static_cast<double>(usage.ru_maxrss);
}

}  // namespace bench
