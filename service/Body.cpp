#include "Body.h"

#include <cstdlib>

#include "HttpError.h"

namespace service {
namespace {

HttpError TooLarge(const BodyLimit& limit) {
  return {413, "the body is larger than " + std::to_string(limit.bytes()) + " bytes"};
}

}  // namespace

void Body::Append(const char* data, std::size_t size) {
  if (size > limit_.bytes_ - bytes_.size()) throw TooLarge(limit_);
  if ((limit_.held_ += size) > 2 * limit_.bytes_) {
    limit_.held_ -= size;
    throw HttpError(503, "too many large requests at the same time");
  }
  bytes_.append(data, size);
}

void Body::Receive(const httplib::Request& request, const httplib::ContentReader& reader) {
  if (request.is_multipart_form_data()) throw HttpError(415, "a form is not taken here");
  if (std::strtoull(request.get_header_value("Content-Length").c_str(), nullptr, 10) > limit_.bytes_) {
    Discard(request, reader);
    throw TooLarge(limit_);
  }
  const bool whole = reader([this](const char* data, std::size_t size) {
    Append(data, size);
    return true;
  });
  if (!whole) throw HttpError(400, "the body is incomplete");
}

void Discard(const httplib::Request& request, const httplib::ContentReader& reader) {
  const auto forget = [](const char*, std::size_t) { return true; };
  if (request.is_multipart_form_data()) {
    reader([](const auto&) { return true; }, forget);
  } else {
    reader(forget);
  }
}

}  // namespace service
