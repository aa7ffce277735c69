// Four-character identifiers.
#include "wrapper/Objects.h"

namespace {

fmx::uchar ByteAt(const void* self, int index) {
  return wrapper::Live<wrapper::QuadCharObject>(self).bytes.at(static_cast<size_t>(index));
}

}  // namespace

namespace fmx {

using wrapper::HostCall;
using wrapper::Live;
using wrapper::QuadCharObject;

FM_API QuadChar* FM_QuadChar_Constructor1(_fmxcpt& x) {
  return HostCall(__func__, x, [&] { return wrapper::Make<QuadCharObject>(); });
}

FM_API QuadChar* FM_QuadChar_Constructor2(char c0, char c1, char c2, char c3, _fmxcpt& x) {
  return HostCall(__func__, x, [&] {
    return wrapper::Make<QuadCharObject>(
        std::array{static_cast<uchar>(c0), static_cast<uchar>(c1), static_cast<uchar>(c2), static_cast<uchar>(c3)});
  });
}

FM_API QuadChar* FM_QuadChar_Constructor3(const QuadChar& other, _fmxcpt& x) {
  return HostCall(__func__, x, [&] { return wrapper::Make<QuadCharObject>(Live<QuadCharObject>(&other)); });
}

FM_API const QuadChar* FM_QuadChar_operatorAS(void* self, const QuadChar& other, _fmxcpt& x) {
  return HostCall(__func__, x, [&] {
    Live<QuadCharObject>(self) = Live<QuadCharObject>(&other);
    return static_cast<const QuadChar*>(self);
  });
}

FM_API uchar FM_QuadChar_operatorAR(void* self, int index, _fmxcpt& x) {
  return HostCall(__func__, x, [&] { return ByteAt(self, index); });
}

FM_API uchar FM_QuadChar_operatorCAR(const void* self, int index, _fmxcpt& x) {
  return HostCall(__func__, x, [&] { return ByteAt(self, index); });
}

FM_ORDER(QuadChar, QuadChar)

FM_API uint32 FM_QuadChar_GetMacType(const void* self, _fmxcpt& x) {
  return HostCall(__func__, x, [&] {
    uint32 type = 0;
    for (const uchar byte : Live<QuadCharObject>(self).bytes) type = type << 8 | byte;
    return type;
  });
}

FM_API void FM_QuadChar_SetMacType(void* self, uint32 type, _fmxcpt& x) {
  HostCall(__func__, x, [&] {
    auto& bytes = Live<QuadCharObject>(self).bytes;
    for (auto byte = bytes.rbegin(); byte != bytes.rend(); ++byte, type >>= 8) *byte = static_cast<uchar>(type);
  });
}

FM_API void FM_QuadChar_Delete(void* self, _fmxcpt&) { wrapper::Delete<QuadCharObject>(__func__, self); }

}  // namespace fmx
