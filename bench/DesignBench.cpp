// A large export as a design: its cost in time and memory, compared with just parsing the XML.
#include <benchmark/benchmark.h>

#include <cstdio>
#include <pugixml.hpp>
#include <string>

#include "LargeExport.h"
#include "Ratio.h"
#include "changes/Changes.h"
#include "design/DesignReader.h"
#include "references/References.h"

namespace {

using namespace solution;

constexpr double kMostMemory = 10;  // times the export

std::unique_ptr<const Design> Read(const std::string& bytes) {
  std::string error;
  return ReadDesignBytes(bytes, "large.xml", error);
}

}  // namespace

int main() {
  const std::string bytes = bench::LargeExport();
  const double before = bench::PeakMemory();
  const auto older = Read(bytes), newer = Read(bytes);
  if (older == nullptr || newer == nullptr) return 1;
  benchmark::DoNotOptimize(FindReferences(*newer));
  benchmark::DoNotOptimize(Compare(*older, *newer));
  const double memory = (bench::PeakMemory() - before) / static_cast<double>(bytes.size());
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
