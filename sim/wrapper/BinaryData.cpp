// Container data.
#include <algorithm>
#include <cstring>

#include "calc/Errors.h"
#include "calc/Unicode.h"
#include "wrapper/Objects.h"

namespace wrapper {
namespace {

using StreamType = std::array<fmx::uchar, 4>;

constexpr StreamType kFileStream = {'F', 'I', 'L', 'E'};
constexpr StreamType kNameStream = {'F', 'N', 'A', 'M'};
constexpr StreamType kSizeStream = {'S', 'I', 'Z', 'E'};
constexpr std::u16string_view kFilePrefix = u"file:";

BinaryDataObject& ContentAt(const void* self) { return Live<BinaryDataObject>(self); }
const StreamType& TypeOf(const fmx::QuadChar& type) { return Live<QuadCharObject>(&type).bytes; }
const std::u16string& UnitsOf(const fmx::Text& text) { return Live<TextObject>(&text).units; }

const Stream& StreamAt(const void* self, fmx::int32 index) {
  return ContentAt(self).streams.at(static_cast<std::size_t>(index));
}

auto Find(BinaryDataObject& content, const StreamType& type) {
  return std::find_if(content.streams.begin(), content.streams.end(),
                      [&](const Stream& stream) { return stream.type == type; });
}

// A type has one stream; a new stream replaces the old one.
void SetStream(BinaryDataObject& content, const StreamType& type, std::string bytes) {
  if (const auto stream = Find(content, type); stream != content.streams.end()) {
    stream->bytes = std::move(bytes);
  } else {
    content.streams.push_back({type, std::move(bytes)});
  }
}

void SetName(BinaryDataObject& content, const std::u16string& name) {
  const auto prefix = name.starts_with(kFilePrefix) ? std::u16string_view() : kFilePrefix;
  SetStream(content, kNameStream, calc::ToUtf8(std::u16string(prefix) + name));
}

void Begin(BinaryDataObject& content, const StreamType& type, fmx::uint32* context) {
  SetStream(content, type, "");
  *context = content.unfinished.empty() ? 1 : content.unfinished.rbegin()->first + 1;
  content.unfinished[*context] = type;
}

std::string Bytes(const void* bytes, fmx::uint32 size) {
  return size == 0 ? std::string() : std::string(static_cast<const char*>(bytes), size);
}

void AppendBigEndian(std::string& bytes, short number) {
  bytes += static_cast<char>(static_cast<unsigned short>(number) >> 8);
  bytes += static_cast<char>(number & 0xFF);
}

short BigEndian(const std::string& bytes, std::size_t at) {
  return static_cast<short>(static_cast<fmx::uchar>(bytes[at]) << 8 | static_cast<fmx::uchar>(bytes[at + 1]));
}

}  // namespace
}  // namespace wrapper

namespace fmx {

using wrapper::Begin;
using wrapper::BinaryDataObject;
using wrapper::Bytes;
using wrapper::ContentAt;
using wrapper::Find;
using wrapper::HostCall;
using wrapper::SetName;
using wrapper::SetStream;
using wrapper::StreamAt;
using wrapper::TypeOf;
namespace errors = calc::errors;

FM_API BinaryData* FM_BinaryData_Constructor1(_fmxcpt& x) {
  return HostCall(__func__, x, [&] { return wrapper::Make<BinaryDataObject>(); });
}

FM_API BinaryData* FM_BinaryData_Constructor2(const BinaryData& other, _fmxcpt& x) {
  return HostCall(__func__, x, [&] { return wrapper::Make<BinaryDataObject>(ContentAt(&other).streams); });
}

FM_API BinaryData* FM_BinaryData_Constructor3(const Text& name, uint32 size, void* bytes, _fmxcpt& x) {
  return HostCall(__func__, x, [&] {
    BinaryDataObject content;
    SetName(content, wrapper::UnitsOf(name));
    SetStream(content, wrapper::kFileStream, Bytes(bytes, size));
    return wrapper::Make<BinaryDataObject>(std::move(content));
  });
}

FM_API BinaryData* FM_BinaryData_Constructor4(const Text& name, uint32* context, _fmxcpt& x) {
  return HostCall(__func__, x, [&] {
    BinaryDataObject content;
    SetName(content, wrapper::UnitsOf(name));
    Begin(content, wrapper::kFileStream, context);
    return wrapper::Make<BinaryDataObject>(std::move(content));
  });
}

FM_API void FM_BinaryData_Delete(void* self, _fmxcpt&) { wrapper::Delete<BinaryDataObject>(__func__, self); }

FM_API BinaryData* FM_BinaryData_operatorAS(void* self, const BinaryData& other, _fmxcpt& x) {
  return HostCall(__func__, x, [&] {
    ContentAt(self) = {ContentAt(&other).streams, {}};
    return static_cast<BinaryData*>(self);
  });
}

FM_EQUALITY(BinaryData, BinaryData)

FM_API int32 FM_BinaryData_GetCount(const void* self, _fmxcpt& x) {
  return HostCall(__func__, x, [&] { return static_cast<int32>(ContentAt(self).streams.size()); });
}

FM_API int32 FM_BinaryData_GetIndex(const void* self, const QuadChar& type, _fmxcpt& x) {
  return HostCall(__func__, x, [&] {
    auto& content = ContentAt(self);
    const auto stream = Find(content, TypeOf(type));
    return stream == content.streams.end() ? -1 : static_cast<int32>(stream - content.streams.begin());
  });
}

FM_API void FM_BinaryData_GetType(const void* self, int32 index, QuadChar& type, _fmxcpt& x) {
  HostCall(__func__, x, [&] { wrapper::Live<wrapper::QuadCharObject>(&type).bytes = StreamAt(self, index).type; });
}

FM_API uint32 FM_BinaryData_GetSize(const void* self, int32 index, _fmxcpt& x) {
  return HostCall(__func__, x, [&] { return static_cast<uint32>(StreamAt(self, index).bytes.size()); });
}

FM_API uint32 FM_BinaryData_GetTotalSize(const void* self, _fmxcpt& x) {
  return HostCall(__func__, x, [&] {
    std::size_t size = 0;
    for (const auto& stream : ContentAt(self).streams) size += stream.bytes.size();
    return static_cast<uint32>(size);
  });
}

FM_API errcode FM_BinaryData_GetData(const void* self, int32 index, uint32 offset, uint32 size, void* buffer,
                                     _fmxcpt& x) {
  return HostCall(__func__, x, [&]() -> errcode {
    const auto& bytes = StreamAt(self, index).bytes;
    if (offset > bytes.size() || size > bytes.size() - offset) return errors::kDataMissing;
    if (size > 0) std::memcpy(buffer, bytes.data() + offset, size);
    return 0;
  });
}

FM_API errcode FM_BinaryData_Add(void* self, const QuadChar& type, uint32 size, void* bytes, _fmxcpt& x) {
  return HostCall(__func__, x, [&] {
    SetStream(ContentAt(self), TypeOf(type), Bytes(bytes, size));
    return errcode{0};
  });
}

FM_API errcode FM_BinaryData_AddBegin(void* self, const QuadChar& type, uint32* context, _fmxcpt& x) {
  return HostCall(__func__, x, [&] {
    Begin(ContentAt(self), TypeOf(type), context);
    return errcode{0};
  });
}

FM_API errcode FM_BinaryData_AddAppend(void* self, uint32 context, uint32 size, void* bytes, _fmxcpt& x) {
  return HostCall(__func__, x, [&]() -> errcode {
    auto& content = ContentAt(self);
    const auto entry = content.unfinished.find(context);
    const auto stream = entry == content.unfinished.end() ? content.streams.end() : Find(content, entry->second);
    if (stream == content.streams.end()) return errors::kDataMissing;
    stream->bytes += Bytes(bytes, size);
    return 0;
  });
}

FM_API errcode FM_BinaryData_AddFinish(void* self, uint32 context, _fmxcpt& x) {
  return HostCall(__func__, x, [&]() -> errcode {
    return ContentAt(self).unfinished.erase(context) == 1 ? 0 : errors::kDataMissing;
  });
}

FM_API bool FM_BinaryData_Remove(void* self, const QuadChar& type, _fmxcpt& x) {
  return HostCall(__func__, x, [&] {
    auto& content = ContentAt(self);
    const auto stream = Find(content, TypeOf(type));
    if (stream == content.streams.end()) return false;
    content.streams.erase(stream);
    return true;
  });
}

FM_API void FM_BinaryData_RemoveAll(void* self, _fmxcpt& x) {
  HostCall(__func__, x, [&] { ContentAt(self) = {}; });
}

FM_API errcode FM_BinaryData_GetFNAMData(const void* self, Text& name, _fmxcpt& x) {
  return HostCall(__func__, x, [&]() -> errcode {
    auto& content = ContentAt(self);
    const auto stream = Find(content, wrapper::kNameStream);
    if (stream == content.streams.end()) return errors::kDataMissing;
    wrapper::Live<wrapper::TextObject>(&name).Assign(calc::ToUtf16(stream->bytes));
    return 0;
  });
}

FM_API errcode FM_BinaryData_AddFNAMData(void* self, const Text& name, _fmxcpt& x) {
  return HostCall(__func__, x, [&] {
    SetName(ContentAt(self), wrapper::UnitsOf(name));
    return errcode{0};
  });
}

FM_API errcode FM_BinaryData_GetSIZEData(const void* self, short& width, short& height, _fmxcpt& x) {
  return HostCall(__func__, x, [&]() -> errcode {
    auto& content = ContentAt(self);
    const auto stream = Find(content, wrapper::kSizeStream);
    if (stream == content.streams.end() || stream->bytes.size() != 4) return errors::kDataMissing;
    width = wrapper::BigEndian(stream->bytes, 0);
    height = wrapper::BigEndian(stream->bytes, 2);
    return 0;
  });
}

FM_API errcode FM_BinaryData_AddSIZEData(void* self, short width, short height, _fmxcpt& x) {
  return HostCall(__func__, x, [&] {
    std::string bytes;
    wrapper::AppendBigEndian(bytes, width);
    wrapper::AppendBigEndian(bytes, height);
    SetStream(ContentAt(self), wrapper::kSizeStream, std::move(bytes));
    return errcode{0};
  });
}

}  // namespace fmx
