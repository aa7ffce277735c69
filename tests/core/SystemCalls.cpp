#include "tests/core/SystemCalls.h"

#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>

namespace {

template <typename Hook, typename... Arguments>
bool Fails(const Hook& hook, const Arguments&... arguments) {
  const int error = hook ? hook(arguments...) : 0;
  if (error != 0) errno = error;
  return error != 0;
}

}  // namespace

extern "C" {

ssize_t __real_read(int file, void* buffer, size_t size);
int __real_fsync(int file);
int __real_rename(const char* from, const char* to);
int __real_fstat(int file, struct stat* info);
int __real_getpwuid_r(uid_t user, passwd* entry, char* buffer, size_t size, passwd** result);

ssize_t __wrap_read(int file, void* buffer, size_t size) {
  return Fails(system_calls::beforeRead, file) ? -1 : __real_read(file, buffer, size);
}

int __wrap_fsync(int file) { return Fails(system_calls::beforeFsync, file) ? -1 : __real_fsync(file); }

int __wrap_rename(const char* from, const char* to) {
  return Fails(system_calls::beforeRename, from, to) ? -1 : __real_rename(from, to);
}

int __wrap_fstat(int file, struct stat* info) {
  const int status = __real_fstat(file, info);
  if (system_calls::reportedSize >= 0) info->st_size = system_calls::reportedSize;
  return status;
}

int __wrap_getpwuid_r(uid_t user, passwd* entry, char* buffer, size_t size, passwd** result) {
  const int error = __real_getpwuid_r(user, entry, buffer, size, result);
  if (*result != nullptr && !system_calls::passwdHome.empty()) entry->pw_dir = system_calls::passwdHome.data();
  return error;
}

}  // extern "C"
