// A large export as a design: what it costs compared with parsing its XML alone, in time and in memory.
#include <benchmark/benchmark.h>
#include <sys/resource.h>

#include <cstdio>
#include <pugixml.hpp>
#include <sstream>
#include <string>

#include "Ratio.h"
#include "changes/Changes.h"
#include "design/DesignReader.h"
#include "references/References.h"

namespace {

using namespace solution;

constexpr std::size_t kBytes = 14'000'000;
constexpr double kMostMemory = 10;  // times the export

// The sample with copies of its longest script until it is large, in UTF-16 as FileMaker writes it.
std::string LargeExport() {
  pugi::xml_document document;
  document.load_file(SAMPLE, pugi::parse_cdata | pugi::parse_escapes);
  const pugi::xml_node catalogs = document.document_element().child("Structure").child("AddAction");
  pugi::xml_node scripts = catalogs.child("ScriptCatalog"), steps = catalogs.child("StepsForScripts");
  const pugi::xml_node script = scripts.child("Script"), list = steps.child("Script");
  std::size_t bytes = 0;
  for (int id = 100; bytes < kBytes; ++id) {
    pugi::xml_node copy = scripts.append_copy(script), listCopy = steps.append_copy(list);
    copy.attribute("id").set_value(id);
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

std::unique_ptr<const Design> Read(const std::string& bytes) {
  std::string error;
  return ReadDesignBytes(bytes, "large.xml", error);
}

}  // namespace

int main() {
  const std::string bytes = LargeExport();
  const double before = PeakMemory();
  const auto older = Read(bytes), newer = Read(bytes);
  if (older == nullptr || newer == nullptr) return 1;
  benchmark::DoNotOptimize(FindReferences(*newer));
  benchmark::DoNotOptimize(Compare(*older, *newer));
  const double memory = (PeakMemory() - before) / static_cast<double>(bytes.size());
  std::printf("two designs, their references and changes: %.1f times the memory of one export, at most %.0f\n", memory,
              kMostMemory);
  const auto parse = [&bytes] {
    pugi::xml_document document;
    benchmark::DoNotOptimize(document.load_buffer(bytes.data(), bytes.size(), pugi::parse_default));
  };
  const int status = bench::Compare({
      {"ReadDesign", bytes.size(), [&] { benchmark::DoNotOptimize(Read(bytes)); }, parse, 0.4},
      {"ReadDesign, FindReferences", bytes.size(), [&] { benchmark::DoNotOptimize(FindReferences(*Read(bytes))); },
       parse, 0.1},
      {"ReadDesign twice, Compare", bytes.size(),
       [&] { benchmark::DoNotOptimize(Compare(*Read(bytes), *Read(bytes))); }, parse, 0.1},
  });
  if (memory <= kMostMemory) return status;
  std::fprintf(stderr, "a design needs too much memory\n");
  return 1;
}
