#include "Ratio.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <map>
#include <string>

#ifdef __GLIBC__
#include <malloc.h>

#include <climits>
#endif

namespace bench {
namespace {

constexpr int kRounds = 15;
constexpr double kSecondsPerRun = 0.01;

/// Keeps freed memory in the process. Otherwise the system would clear fresh pages for every large result,
/// which takes longer than the work to be measured.
void KeepMemory() {
#ifdef __GLIBC__
  mallopt(M_MMAP_MAX, 0);
  mallopt(M_TRIM_THRESHOLD, INT_MAX);
#endif
}

/// Remembers the best speed of each benchmark.
class BestSpeeds : public benchmark::BenchmarkReporter {
 public:
  bool ReportContext(const Context&) override { return true; }
  void ReportRuns(const std::vector<Run>& runs) override {
    for (const Run& run : runs) {
      double& best = best_[run.run_name.function_name];
      best = std::max(best, run.counters.at("bytes_per_second").value);
    }
  }
  double operator[](const std::string& name) const { return best_.at(name); }

 private:
  std::map<std::string, double> best_;
};

void Register(const std::string& name, std::size_t bytes, const std::function<void()>& call) {
  benchmark::RegisterBenchmark(name.c_str(), [bytes, &call](benchmark::State& state) {
    for (auto _ : state) call();
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(bytes));
  })->MinTime(kSecondsPerRun);
}

std::string SizeText(std::size_t bytes) {
  if (bytes >= 1 << 20) return std::to_string(bytes >> 20) + " MB";
  return std::to_string(bytes >> 10) + " KB";
}

}  // namespace

int Compare(const std::vector<Comparison>& comparisons) {
  KeepMemory();
  const auto name = [](std::size_t i, const char* side) { return std::to_string(i) + '.' + side; };
  std::vector<std::function<void()>> copies(comparisons.size());
  for (std::size_t i = 0; i < comparisons.size(); ++i) {
    Register(name(i, "ours"), comparisons[i].bytes, comparisons[i].ours);
    Register(name(i, "rival"), comparisons[i].bytes, comparisons[i].rival);
    auto& copy = copies[i] = [from = std::string(comparisons[i].bytes, 'x'),
                              to = std::string(comparisons[i].bytes, 0)]() mutable {
      std::memcpy(to.data(), from.data(), from.size());
      benchmark::ClobberMemory();
    };
    Register(name(i, "copy"), comparisons[i].bytes, copy);
  }
  BestSpeeds best;
  for (int round = 0; round < kRounds; ++round) {
    for (std::size_t i = 0; i < comparisons.size(); ++i) {
      benchmark::RunSpecifiedBenchmarks(&best, "^" + std::to_string(i) + "\\.");
    }
  }
  int status = 0;
  std::printf("%-44s | %6s | %9s | %10s | %6s | %8s | %9s\n", "operation", "size", "ours GB/s", "rival GB/s", "ratio",
              "demanded", "of memcpy");
  for (std::size_t i = 0; i < comparisons.size(); ++i) {
    const Comparison& c = comparisons[i];
    const double ours = best[name(i, "ours")], rival = best[name(i, "rival")], ratio = ours / rival;
    const std::string size = SizeText(c.bytes);
    std::printf("%-44s | %6s | %9.2f | %10.2f | %6.2f | %8.2f | %9.2f\n", c.operation.c_str(), size.c_str(), ours / 1e9,
                rival / 1e9, ratio, c.demanded, ours / best[name(i, "copy")]);
    if (ratio >= c.demanded) continue;
    std::fprintf(stderr, "TOO SLOW: %s of %s: ratio %.2f, demanded %.2f\n", c.operation.c_str(), size.c_str(), ratio,
                 c.demanded);
    status = 1;
  }
  return status;
}

}  // namespace bench
