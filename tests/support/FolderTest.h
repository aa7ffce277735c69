// A test with its own folder, which is removed with its contents at the end, and with surroundings that do not depend
// on who runs it: settings in the folder, no X server, files that only their owner can write.
#pragma once

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

/// All bytes of the file at `path`; "" when it cannot be read.
inline std::string Contents(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

class FolderTest : public testing::Test {
 protected:
  FolderTest() {
    std::string pattern = testing::TempDir() + "varnix-test-XXXXXX";
    folder_ = mkdtemp(pattern.data());
    setenv("XDG_CONFIG_HOME", folder_.c_str(), 1);
    unsetenv("DISPLAY");
    umask(022);
  }
  ~FolderTest() override { std::filesystem::remove_all(folder_); }

  std::string folder_;
};
