// Reading base64.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace service {

/// The bytes that `text` stands for; nothing when it is not base64 of the standard alphabet, padded, without line ends.
std::optional<std::string> DecodeBase64(std::string_view text);

}  // namespace service
