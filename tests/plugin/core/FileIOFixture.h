// A folder for files, and reading them whole.
#pragma once

#include <cstddef>
#include <filesystem>
#include <fstream>
#include <string>

#include "host/FileIO.h"
#include "support/FolderTest.h"

class FileIOTest : public FolderTest {
 protected:
  std::string Write(const std::string& name, const std::string& bytes) const {
    std::ofstream(directory_ / name, std::ios::binary) << bytes;
    return directory_ / name;
  }

  const std::filesystem::path directory_ = folder_;
};

inline std::string AllByteValues(std::size_t size) {
  std::string bytes(size, '\0');
  for (std::size_t i = 0; i < size; ++i) bytes[i] = static_cast<char>(i * 31 + i / 256);
  return bytes;
}

/// The content, or the error after checking that the content was left unchanged.
inline std::string ReadOrError(const std::string& path) {
  std::string content = "old", appended = "old", error = "none";
  const bool read = FileIO::Read(path, content, error);
  EXPECT_EQ(read ? error : content, read ? "none" : "old");
  EXPECT_EQ(FileIO::ReadAppending(path, appended, error), read);
  EXPECT_TRUE(appended == (read ? "old" + content : "old"));
  return read ? content : error;
}
