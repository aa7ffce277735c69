// Reading whole files, and the functions for files and paths.
#include "host/FileIO.h"

#include <sys/stat.h>

#include <filesystem>
#include <limits>

#include "host/FileFunctions.h"
#include "plugin/core/NewProcess.h"
#include "support/FolderTest.h"
#include "support/Rows.h"
#include "support/ScriptedHost.h"

namespace fs = std::filesystem;

namespace {

class FileIOTest : public FolderTest {
 protected:
  std::string Write(const std::string& name, const std::string& bytes) const {
    std::ofstream(directory_ / name, std::ios::binary) << bytes;
    return directory_ / name;
  }

  const fs::path directory_ = folder_;
};

std::string AllByteValues(std::size_t size) {
  std::string bytes(size, '\0');
  for (std::size_t i = 0; i < size; ++i) bytes[i] = static_cast<char>(i * 31 + i / 256);
  return bytes;
}

/// The content, or the error after checking that the content was left unchanged.
std::string ReadOrError(const std::string& path) {
  std::string content = "old", appended = "old", error = "none";
  const bool read = FileIO::Read(path, content, error);
  EXPECT_EQ(read ? error : content, read ? "none" : "old");
  EXPECT_EQ(FileIO::ReadAppending(path, appended, error), read);
  EXPECT_TRUE(appended == (read ? "old" + content : "old"));
  return read ? content : error;
}

TEST_F(FileIOTest, ReadsEveryByteOfAFile) {
  for (const std::size_t size : {0, 1, 4095, 4096, 4097, 3000000}) {
    const std::string bytes = AllByteValues(size);
    EXPECT_TRUE(ReadOrError(Write("some file \xC3\xBC", bytes)) == bytes) << size;
  }
  fs::create_symlink(Write("target", "linked"), directory_ / "link");
  EXPECT_EQ(ReadOrError(directory_ / "link"), "linked");
}

TEST_F(FileIOTest, CannotOpenAnythingButAReadableRegularFile) {
  const std::string fifo = directory_ / "fifo", secret = Write("secret", "secret"), file = Write("file", "content");
  ASSERT_EQ(mkfifo(fifo.c_str(), 0666), 0);
  fs::permissions(directory_, fs::perms(0755));
  fs::permissions(secret, fs::perms::none);
  InNewProcess([&] {
    EXPECT_EQ(ReadOrError(file), "content");
    const fs::path paths[] = {"", directory_ / "missing", directory_, fifo, "/dev/zero", secret, file + "/", "~/file"};
    for (const fs::path& path : paths) EXPECT_EQ(ReadOrError(path), "ERROR: Could not open file: " + path.string());
  });
}

TEST_F(FileIOTest, TheFunctionsGiveTheTextOfAFileAndThePathWithoutItsVolume) {
  const ScriptedHost host;
  const std::string file = Write("some file ü", "Größe\r\n");
  const std::map<std::string, fmx::ExtPluginType> functions = {{"ReadFile", Do_ReadFile}, {"POSIXPath", Do_POSIXPath}};
  ExpectRows(DATA "/file-functions.txt", [&](const auto& call) {
    return Replaced(CallRow(functions, Replaced(call, "{file}", file)), file, "{file}");
  });
}

}  // namespace

#ifndef __APPLE__  // whose linker replaces no system call

namespace {

long long g_reportedSize = -1;  // the size that fstat() reports for every file, unless negative

// The file may be growing or shrinking.
TEST_F(FileIOTest, ReadsToTheEndWhateverSizeAFileReports) {
  EXPECT_EQ(ReadOrError("/proc/self/mem"), "ERROR: Failed to read file: /proc/self/mem");
  const std::string bytes = AllByteValues(100000), path = Write("file", bytes);
  for (const long long size : {0, 5000, 1000000}) {
    g_reportedSize = size;
    EXPECT_TRUE(ReadOrError(path) == bytes) << size;
  }
  g_reportedSize = std::numeric_limits<long long>::max();
  EXPECT_EQ(ReadOrError(path), "ERROR: Failed to read file: " + path) << "no string can hold it";
  g_reportedSize = -1;
}

}  // namespace

extern "C" int __real_fstat(int file, struct stat* info);
extern "C" int __wrap_fstat(int file, struct stat* info) {
  const int status = __real_fstat(file, info);
  if (g_reportedSize >= 0) info->st_size = g_reportedSize;
  return status;
}

#endif
