// The exception status that every host call reports through its last argument.
#pragma once

#include <FMWrapper/FMXExtern.h>

#include <memory>
#include <new>
#include <stdexcept>

namespace fmx {

struct _fmxcpt {
  enum { kNoErr = 0, kBadAlloc = 1, kUnknown = 2 };

  int32 m_vers = 1;
  int32 m_code = kNoErr;

  /// Raises what the host reported; call it after every host call.
  void Check() const {
    if (m_code == kBadAlloc) throw std::bad_alloc();
    if (m_code == kUnknown) throw std::exception();
  }
};

}  // namespace fmx
