// The thread sanitizer believes that all threads share one table of descriptors. The transfer thread has its own, where
// the same number is another socket, so what libcurl does with its sockets is left out.

extern "C" __attribute__((visibility("default"), used)) const char* __tsan_default_suppressions() {
  return "called_from_lib:libcurl.so\n";
}
