// The encodings that plug-ins exchange text in.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace wrapper {

/// `encoding` is one of Text::Encoding; both raise std::invalid_argument for another, and for those that ICU lacks
/// (Korean Johab, Arabic and Hebrew of the Mac). What one side cannot express becomes a substitution character.
std::u16string Decode(std::string_view bytes, std::int32_t encoding);
std::string Encode(std::u16string_view text, std::int32_t encoding);

/// As many whole characters of `text`, from its beginning, as fit into `capacity` bytes.
std::string EncodeWithin(std::u16string_view text, std::int32_t encoding, std::size_t capacity);

}  // namespace wrapper
