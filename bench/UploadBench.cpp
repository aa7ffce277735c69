// The cost of an upload: the peak memory of its process, and its time compared with curl's for the same file. Both run
// in their own processes, against a server that discards what it reads.
#include <fcntl.h>
#include <spawn.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

#include "support/LoopbackServer.h"

namespace {

constexpr double kMegabyte = 1 << 20;
constexpr int kFileMegabytes = 512;
constexpr double kSpareMegabytes = 32;
constexpr int kRounds = 5;

struct Cost {
  double seconds;
  double megabytes;
};

Cost Run(const std::vector<std::string>& arguments) {
  std::vector<char*> argv;
  for (const auto& argument : arguments) argv.push_back(const_cast<char*>(argument.c_str()));
  argv.push_back(nullptr);
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
  const auto start = std::chrono::steady_clock::now();
  pid_t child;
  int status = -1;
  rusage usage{};
  if (posix_spawnp(&child, argv[0], &actions, nullptr, argv.data(), environ) == 0) wait4(child, &status, 0, &usage);
  posix_spawn_file_actions_destroy(&actions);
  if (status != 0) {
    std::fprintf(stderr, "%s failed\n", argv[0]);
    std::exit(1);
  }
  const std::chrono::duration<double> time = std::chrono::steady_clock::now() - start;
  return {time.count(), static_cast<double>(usage.ru_maxrss) * 1024 / kMegabyte};
}

Cost Best(const Cost& a, const Cost& b) { return {std::min(a.seconds, b.seconds), std::min(a.megabytes, b.megabytes)}; }

std::vector<std::string> Evaluating(const std::string& calculation) {
  return {FMSIM, "--plugin", PLUGIN_FILE, "--eval", calculation};
}

int Check(const char* what, double value, double limit, bool atMost) {
  std::printf("%-62s | %8.2f | %s %8.2f\n", what, value, atMost ? "<=" : ">=", limit);
  if (atMost ? value <= limit : value >= limit) return 0;
  std::fprintf(stderr, "MISSED: %s\n", what);
  return 1;
}

}  // namespace

int main() {
  static char path[] = "/tmp/varnix-upload-XXXXXX";
  const int file = mkstemp(path);
  std::atexit([] { unlink(path); });
  const std::string block(1 << 20, 'x');
  for (int i = 0; i < kFileMegabytes; ++i) {
    if (write(file, block.data(), block.size()) != static_cast<ssize_t>(block.size())) return 1;
  }
  close(file);

  LoopbackServer server([](LoopbackServer::Connection& connection) {
    while (connection.SkipRequest()) connection.Send("HTTP/1.1 200 OK\r\nContent-Length: 2\r\n\r\nok");
  });
  const std::string quoted = "\"" + server.Url("/") + "\"";
  const auto uploading = Evaluating("Varnix.UploadFile(" + quoted + ";\"K\";\"f\";\"" + path + "\")");
  const auto pushing = Evaluating("Varnix.PushSnapshot(" + quoted + ";\"" + path + "\")");
  const std::vector<std::string> curl = {
      "curl", "-sf", "-H", "Expect:", "--data-binary", std::string("@") + path, server.Url("/")};
  Cost upload = Run(uploading), snapshot = Run(pushing), rival = Run(curl);
  for (int round = 1; round < kRounds; ++round) {
    upload = Best(upload, Run(uploading));
    snapshot = Best(snapshot, Run(pushing));
    rival = Best(rival, Run(curl));
  }

  std::printf("%-62s | %8s | %11s\n", "a file of 512 MB", "measured", "demanded");
  int missed = Check("UploadFile: peak memory in MB", upload.megabytes, 1.1 * kFileMegabytes + kSpareMegabytes, true);
  missed += Check("PushSnapshot: peak memory in MB", snapshot.megabytes, 2.4 * kFileMegabytes + kSpareMegabytes, true);
  missed += Check("UploadFile: speed as a multiple of curl --data-binary", rival.seconds / upload.seconds, 0.8, false);
  return missed != 0;
}
