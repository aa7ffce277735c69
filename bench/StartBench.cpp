// From the start of the simulated FileMaker to the plug-in's first answer, beside one that has no plug-in, and the curl
// command, which loads libcurl as the plug-in does.
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

#include "tests/support/Process.h"

namespace {

using Clock = std::chrono::steady_clock;
using Milliseconds = std::chrono::duration<double, std::milli>;

constexpr int kRounds = 21;
constexpr double kMostRatio = 1.25;

double Run(const std::vector<std::string>& arguments, const std::string& input, const std::string& answer) {
  const auto start = Clock::now();
  const auto result = RunProcess(arguments, input);
  if (!result.output.starts_with(answer)) {
    std::fprintf(stderr, "%s did not answer: %s\n", arguments[0].c_str(), result.errors.c_str());
    std::exit(1);
  }
  return Milliseconds(Clock::now() - start).count();
}

double Median(std::vector<double> times) {
  std::nth_element(times.begin(), times.begin() + kRounds / 2, times.end());
  return times[kRounds / 2];
}

}  // namespace

int main() {
  std::vector<double> with, without, curl;
  for (int round = 0; round < kRounds; ++round) {
    without.push_back(Run({FMSIM}, "1 + 1\n", "2\n"));
    with.push_back(Run({FMSIM, "--plugin", PLUGIN_FILE}, "Varnix.Version\n", VARNIX_VERSION "\n"));
    curl.push_back(Run({"/usr/bin/curl", "--version"}, "", "curl "));
  }
  const double ratio = Median(with) / (Median(without) + Median(curl));
  std::printf(
      "start to first answer: %.1f ms with the plug-in, %.1f ms without, curl %.1f ms; ratio %.2f, at most %.2f\n",
      Median(with), Median(without), Median(curl), ratio, kMostRatio);
  if (ratio <= kMostRatio) return 0;
  std::fprintf(stderr, "TOO SLOW: start of the plug-in\n");
  return 1;
}
