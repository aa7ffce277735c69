// The start of the simulated FileMaker up to the plug-in's first answer, compared with a start without the plug-in plus
// one of the curl command, which loads libcurl as the plug-in does; and its end while a poll hangs, compared with its
// end while signed out.
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "support/LoopbackServer.h"
#include "support/Process.h"

namespace {

using Clock = std::chrono::steady_clock;
using Milliseconds = std::chrono::duration<double, std::milli>;

constexpr int kRounds = 21;
constexpr double kMostRatio = 1.25;
constexpr double kMostMillisecondsOfEnd = 200;

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

bool Check(const char* what, double value, double limit) {
  std::printf("%-62s | %8.2f | %8.2f\n", what, value, limit);
  if (value <= limit) return true;
  std::fprintf(stderr, "TOO SLOW: %s\n", what);
  return false;
}

bool MeasureStart() {
  std::vector<double> with, without, curl;
  for (int round = 0; round < kRounds; ++round) {
    without.push_back(Run({FMSIM}, "1 + 1\n", "2\n"));
    with.push_back(Run({FMSIM, "--plugin", PLUGIN_FILE}, "Varnix.Version\n", VARNIX_VERSION "\n"));
    curl.push_back(Run({"/usr/bin/curl", "--version"}, "", "curl "));
  }
  return Check("start to the first answer, as a multiple of fmsim and of curl",
               Median(with) / (Median(without) + Median(curl)), kMostRatio);
}

bool MeasureEnd(const std::string& folder) {
  LoopbackServer server(NeverAnswer);
  setenv("XDG_CONFIG_HOME", folder.c_str(), 1);
  unsetenv("DISPLAY");
  std::vector<double> signedOut, polling;
  for (int round = 0; round < kRounds; ++round) {
    std::filesystem::remove_all(folder + "/varnix");
    signedOut.push_back(Run({FMSIM, "--plugin", PLUGIN_FILE}, ".idle 0.1\n", ""));
    std::filesystem::create_directories(folder + "/varnix");
    std::ofstream(folder + "/varnix/com.varnix.plugin.licenseKey") << "K";
    std::ofstream(folder + "/varnix/com.varnix.plugin.baseUrl") << server.Url();
    polling.push_back(Run({FMSIM, "--plugin", PLUGIN_FILE}, ".idle 0.1\n", ""));
  }
  if (server.Requests().size() != kRounds) return Check("no poll hung", 1, 0);
  return Check("end while a poll hangs, in ms more than signed out", Median(polling) - Median(signedOut),
               kMostMillisecondsOfEnd);
}

}  // namespace

int main() {
  std::string folder = std::filesystem::temp_directory_path() / "varnix-start-XXXXXX";
  mkdtemp(folder.data());
  std::printf("%-62s | %8s | %8s\n", "", "measured", "at most");
  const bool swift = MeasureStart() & MeasureEnd(folder);
  std::filesystem::remove_all(folder);
  return swift ? 0 : 1;
}
