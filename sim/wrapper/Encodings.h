// The encodings in which plug-ins exchange text.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace wrapper {

/// `encoding` is one of Text::Encoding. Both throw std::invalid_argument for any other value and for the encodings that
/// ICU lacks (Korean Johab, Mac Arabic, Mac Hebrew). Unmappable characters become a substitution character.
std::u16string Decode(std::string_view bytes, std::int32_t encoding);
std::string Encode(std::u16string_view text, std::int32_t encoding);

/// The longest prefix of `text` that consists of whole characters and fits into `capacity` bytes.
std::string EncodeWithin(std::u16string_view text, std::int32_t encoding, std::size_t capacity);

}  // namespace wrapper
