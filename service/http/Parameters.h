// The values of parameters in the addresses or messages of requests.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "http/Http.h"

namespace service {

inline constexpr std::int64_t kMostRows = 1000;  ///< of a list in one answer

/// `text` as an integer; nothing when it is anything else.
std::optional<std::int64_t> WholeNumber(std::string_view text);

/// A parameter of the address; nothing when it is missing.
std::optional<std::string> Parameter(const Request& request, const std::string& name);

/// `text`, the value of `name`, as an integer; `otherwise` if there is no text. Throws HttpError 400.
std::int64_t Number(const char* name, const std::optional<std::string>& text, std::int64_t lowest, std::int64_t highest,
                    std::int64_t otherwise);

/// The parameter "limit": the largest number of rows in a list. Throws HttpError 400.
std::int64_t Rows(const Request& request);

}  // namespace service
