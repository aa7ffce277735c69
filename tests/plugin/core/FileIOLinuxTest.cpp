// Files that fail while they are read, or whose size is not what the system reports.
#include <sys/stat.h>

#include <limits>

#include "plugin/core/FileIOFixture.h"

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
