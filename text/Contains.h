// Look-up in a short list of words.
#pragma once

#include <algorithm>
#include <cstddef>
#include <string_view>

template <std::size_t size>
bool Contains(const std::string_view (&words)[size], std::string_view word) {
  return std::find(words, words + size, word) != words + size;
}
