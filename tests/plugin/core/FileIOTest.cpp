// Reading whole files, and the functions for files and paths.
#include <sys/stat.h>

#include "host/FileFunctions.h"
#include "plugin/core/FileIOFixture.h"
#include "plugin/core/NewProcess.h"
#include "support/ScriptedHost.h"

namespace fs = std::filesystem;

namespace {

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
  const std::string file = Write("some file ü", "Größe\r\n"), missing = "/Macintosh HD" + file;
  const std::tuple<fmx::ExtPluginType, std::string, std::string> cases[] = {
      {Do_ReadFile, file, "Größe\r\n"},
      {Do_ReadFile, missing, "ERROR: Could not open file: " + missing},
      {Do_ReadFile, "", "ERROR: path is empty."},
      {Do_POSIXPath, missing, file},
      {Do_POSIXPath, "/Größe/漢 字", "/漢 字"},
      {Do_POSIXPath, "filemac:/Macintosh HD/x", "filemac:/Macintosh HD/x"},
      {Do_POSIXPath, "//x", "/x"},
      {Do_POSIXPath, "/x", "/x"},
      {Do_POSIXPath, "/", "/"},
      {Do_POSIXPath, "", ""},
  };
  for (const auto& [handler, path, expected] : cases) EXPECT_EQ(CallHandler(handler, {path}), expected) << path;
}

}  // namespace
