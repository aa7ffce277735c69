// Reading whole files, files that change or fail meanwhile included, and the functions that give it to calculations.
#include "host/FileIO.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/inotify.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <limits>
#include <utility>

#include "host/FileDescriptor.h"
#include "tests/core/NewProcess.h"
#include "tests/core/SystemCalls.h"
#include "tests/support/FolderTest.h"
#include "tests/support/ScriptedHost.h"

namespace fs = std::filesystem;

namespace {

class FileIOTest : public FolderTest {
 protected:
  ~FileIOTest() override {
    system_calls::beforeRead = nullptr;
    system_calls::reportedSize = -1;
  }

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

/// The content; or the error, after checking that the content was left alone.
std::string ReadOrError(const std::string& path) {
  std::string content = "old";
  std::string error = "none";
  if (FileIO::Read(path, content, error)) {
    EXPECT_EQ(error, "none");
    return content;
  }
  EXPECT_EQ(content, "old");
  return error;
}

TEST_F(FileIOTest, ReadsEveryByteOfAFile) {
  for (const std::size_t size : {0, 1, 4095, 4096, 4097, 3000000}) {
    const std::string bytes = AllByteValues(size);
    EXPECT_TRUE(ReadOrError(Write("some file \xC3\xBC", bytes)) == bytes) << size;
  }
  fs::create_symlink(Write("target", "linked"), directory_ / "link");
  EXPECT_EQ(ReadOrError(directory_ / "link"), "linked");
}

TEST_F(FileIOTest, ReadsFilesThatReportNoSize) {
  std::ifstream version("/proc/version");
  EXPECT_EQ(ReadOrError("/proc/version") + '\n', std::string(std::istreambuf_iterator<char>(version), {}) + '\n');
}

TEST_F(FileIOTest, CannotOpenAnythingButAReadableRegularFile) {
  const std::string fifo = directory_ / "fifo", secret = Write("secret", "secret"), file = Write("file", "content");
  ASSERT_EQ(mkfifo(fifo.c_str(), 0666), 0);
  fs::create_symlink(directory_ / "missing", directory_ / "dangling");
  fs::create_symlink("circle", directory_ / "circle");
  fs::permissions(directory_, fs::perms(0755));
  fs::permissions(secret, fs::perms::none);
  InNewProcess([&] {
    EXPECT_EQ(ReadOrError(file), "content");
    const fs::path paths[] = {"",
                              directory_ / "missing",
                              directory_,
                              fifo,
                              "/dev/zero",
                              "/dev/tty",
                              directory_ / "dangling",
                              directory_ / "circle",
                              secret,
                              file + "/",
                              std::string(5000, 'x'),
                              "~/file"};
    for (const fs::path& path : paths) EXPECT_EQ(ReadOrError(path), "ERROR: Could not open file: " + path.string());
    return "";
  });
}

// Opening would already wake a writer that waits at the other end.
TEST_F(FileIOTest, NeverOpensAFifo) {
  const std::string fifo = directory_ / "fifo";
  ASSERT_EQ(mkfifo(fifo.c_str(), 0666), 0);
  const FileDescriptor watch(inotify_init1(IN_NONBLOCK));
  ASSERT_GE(inotify_add_watch(watch.get(), fifo.c_str(), IN_OPEN), 0);
  char event[256];

  ReadOrError(fifo);
  EXPECT_EQ(read(watch.get(), event, sizeof event), -1);
  const FileDescriptor opened(open(fifo.c_str(), O_RDONLY | O_NONBLOCK));
  EXPECT_GT(read(watch.get(), event, sizeof event), 0) << "the watch shows no opening at all";
}

TEST_F(FileIOTest, ReportsAFileThatCannotBeRead) {
  EXPECT_EQ(ReadOrError("/proc/self/mem"), "ERROR: Failed to read file: /proc/self/mem");

  const std::string path = Write("file", AllByteValues(10000));
  int reads = 0;
  system_calls::beforeRead = [&](int) { return ++reads == 2 ? EIO : 0; };
  EXPECT_EQ(ReadOrError(path), "ERROR: Failed to read file: " + path);
}

TEST_F(FileIOTest, ReportsAFileThatNoStringCanHold) {
  const std::string path = Write("file", "content");
  system_calls::reportedSize = std::numeric_limits<long long>::max();
  EXPECT_EQ(ReadOrError(path), "ERROR: Failed to read file: " + path);
}

TEST_F(FileIOTest, GoesOnAfterAnInterruption) {
  const std::string path = Write("file", "content");
  int reads = 0;
  system_calls::beforeRead = [&](int) { return ++reads % 2 == 1 ? EINTR : 0; };
  EXPECT_EQ(ReadOrError(path), "content");
}

TEST_F(FileIOTest, ReadsToTheEndOfAFileThatChangesMeanwhile) {
  const std::string path = Write("file", "short");
  const std::string longer = AllByteValues(100000);
  system_calls::beforeRead = [&](int) { return Write("file", longer), 0; };
  EXPECT_TRUE(ReadOrError(path) == longer);
  system_calls::beforeRead = [&](int) { return Write("file", "short"), 0; };
  EXPECT_EQ(ReadOrError(path), "short");
}

TEST_F(FileIOTest, ReadFileGivesTheContentOrTheErrorAsTheText) {
  const ScriptedHost host;
  const std::string file = Write("some file ü", "Größe\r\n"), fileMakerPath = "/Macintosh HD" + file;
  EXPECT_EQ(CallHandler(Do_ReadFile, {file}), "Größe\r\n");
  EXPECT_EQ(CallHandler(Do_ReadFile, {fileMakerPath}), "ERROR: Could not open file: " + fileMakerPath);
  EXPECT_EQ(CallHandler(Do_ReadFile, {""}), "ERROR: path is empty.");
}

TEST(POSIXPath, LosesItsFirstComponentAndNothingElse) {
  const ScriptedHost host;
  const std::pair<const char*, const char*> cases[] = {
      {"/Macintosh HD/var/tmp/x.xml", "/var/tmp/x.xml"},
      {"/Größe/漢 字", "/漢 字"},
      {"filemac:/Macintosh HD/x", "filemac:/Macintosh HD/x"},
      {" /Vol/x", " /Vol/x"},
      {"//x", "/x"},
      {"/x", "/x"},
      {"/", "/"},
      {"", ""},
      {"x/y", "x/y"},
  };
  for (const auto& [path, expected] : cases) EXPECT_EQ(CallHandler(Do_POSIXPath, {path}), expected);
}

}  // namespace
