// The values that requests carry in their addresses or messages.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "Http.h"

namespace service {

inline constexpr std::int64_t kMostRows = 1000;  ///< of a list in one answer

/// `text` as a whole number; nothing when it is not one, or has anything before or after it.
std::optional<std::int64_t> WholeNumber(std::string_view text);

/// A parameter of the address; nothing without it.
std::optional<std::string> Parameter(const Request& request, const std::string& name);

/// `text`, the value of `name`, as a whole number; `otherwise` without it. Throws HttpError 400.
std::int64_t Number(const char* name, const std::optional<std::string>& text, std::int64_t lowest, std::int64_t highest,
                    std::int64_t otherwise);

/// The parameter "limit": how many rows a list has at most. Throws HttpError 400.
std::int64_t Rows(const Request& request);

}  // namespace service
