// What all fuzzers share. Each defines Try, which aborts the program when a rule does not hold.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

void Try(const std::string& input);

inline void Check(bool holds) {
  if (!holds) std::abort();
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  Try({reinterpret_cast<const char*>(data), size});
  return 0;
}
