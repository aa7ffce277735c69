// The index of a large export: the cost of making and searching it, compared with just parsing the XML, and its memory.
#include <benchmark/benchmark.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <pugixml.hpp>
#include <string>

#include "LargeExport.h"
#include "Ratio.h"
#include "designs/DesignStore.h"
#include "store/Store.h"

namespace {

constexpr double kMostMemory = 10;  // times the export

struct TemporaryFolder {
  TemporaryFolder() {
    std::string pattern = (std::filesystem::temp_directory_path() / "varnix-bench-XXXXXX").string();
    if (mkdtemp(pattern.data()) == nullptr) std::abort();
    path = pattern;
  }
  ~TemporaryFolder() { std::filesystem::remove_all(path); }

  std::string path;
};

void Index(const std::string& folder) {
  for (const char* ending : {"", "-wal", "-shm"}) std::filesystem::remove(folder + "/varnix-designs.db" + ending);
  service::DesignStore(folder).CatchUp(false);
}

std::size_t Search(const std::string& folder, const std::string& text) {
  std::size_t hits = 0;
  service::DesignStore designs(folder);
  designs.CatchUp(false);
  designs.Search(text, "", [&hits](const service::StoredHit&) { ++hits; });
  return hits;
}

}  // namespace

int main() {
  const TemporaryFolder folder;
  const std::string bytes = bench::LargeExport();
  service::Store(folder.path).Add({"upload", "Large.fmp12.xml", std::nullopt, bytes});
  const double before = bench::PeakMemory();
  Index(folder.path);
  const double memory = (bench::PeakMemory() - before) / static_cast<double>(bytes.size());
  std::printf("the index of a design: %.1f times the memory of the export, at most %.0f\n", memory, kMostMemory);
  for (const char* text : {"Orders::Status", "or"}) {
    if (Search(folder.path, text) == 0) return 1;
  }
  const auto parse = [&bytes] {
    pugi::xml_document document;
    benchmark::DoNotOptimize(document.load_buffer(bytes.data(), bytes.size(), pugi::parse_default));
  };
  const int status = bench::Compare({
      {"index", bytes.size(), [&] { Index(folder.path); }, parse, 0.03},
      {"search, three letters or more", bytes.size(), [&] { Search(folder.path, "Orders::Status"); }, parse, 1},
      {"search, two letters", bytes.size(), [&] { Search(folder.path, "or"); }, parse, 1},
  });
  if (memory <= kMostMemory) return status;
  std::fprintf(stderr, "an index needs too much memory\n");
  return 1;
}
