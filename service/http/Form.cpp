#include "http/Form.h"

#include <algorithm>

#include "http/HttpError.h"

namespace service {
namespace {

[[noreturn]] void RefuseForm() { throw HttpError(400, "the form is incomplete or malformed"); }

// The text in `text` between `before` and the next `after`.
std::string_view Between(std::string_view text, std::string_view before, std::string_view after) {
  const auto begin = text.find(before);
  if (begin == std::string_view::npos) RefuseForm();
  text.remove_prefix(begin + before.size());
  const auto end = text.find(after);
  if (end == std::string_view::npos) RefuseForm();
  return text.substr(0, end);
}

std::string Boundary(std::string_view contentType) {
  constexpr std::string_view kName = "boundary=";
  const auto begin = contentType.find(kName);
  if (begin == std::string_view::npos) RefuseForm();
  std::string_view boundary = contentType.substr(begin + kName.size());
  if (boundary.starts_with('"')) return std::string(Between(boundary, "\"", "\""));
  boundary = boundary.substr(0, boundary.find_first_of("; \t"));
  if (boundary.empty()) RefuseForm();
  return std::string(boundary);
}

}  // namespace

std::map<std::string, std::string_view> ReadForm(std::string_view body, std::string_view contentType) {
  const std::string delimiter = std::string("\r\n--").append(Boundary(contentType));
  const std::string_view boundary = std::string_view(delimiter).substr(2);
  const auto first = body.find(boundary);
  if (first != 0 && (first == std::string_view::npos || !body.substr(0, first).ends_with("\r\n"))) RefuseForm();
  body.remove_prefix(first + boundary.size());

  std::map<std::string, std::string_view> parts;
  while (body.starts_with("\r\n")) {
    const auto headEnd = body.find("\r\n\r\n");
    if (headEnd == std::string_view::npos) RefuseForm();
    const std::string_view name = Between(body.substr(0, headEnd), " name=\"", "\"");
    body.remove_prefix(headEnd + 4);
    const auto end = body.find(delimiter);
    if (end == std::string_view::npos) RefuseForm();
    if (!parts.emplace(name, body.substr(0, end)).second)
      throw HttpError(400, "the form has two parts with the same name");
    body.remove_prefix(end + delimiter.size());
  }
  if (!body.starts_with("--")) RefuseForm();
  return parts;
}

}  // namespace service
