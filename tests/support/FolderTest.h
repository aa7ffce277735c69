// A test with a folder of its own, gone with its contents when the test ends.
#pragma once

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <string>

class FolderTest : public testing::Test {
 protected:
  FolderTest() {
    std::string pattern = testing::TempDir() + "varnix-test-XXXXXX";
    folder_ = mkdtemp(pattern.data());
  }
  ~FolderTest() override { std::filesystem::remove_all(folder_); }

  std::string folder_;
};
