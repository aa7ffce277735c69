// Reads multipart forms.
#pragma once

#include <map>
#include <string>
#include <string_view>

namespace service {

/// The parts of the form `body` by name, as views into it. `contentType` is the header that names the boundary. Throws
/// HttpError 400 when the form is malformed or incomplete, or has two parts with the same name.
std::map<std::string, std::string_view> ReadForm(std::string_view body, std::string_view contentType);

}  // namespace service
