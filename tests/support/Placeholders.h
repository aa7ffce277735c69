// Texts in data files with placeholders that a test fills in.
#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <vector>

inline std::string Replaced(std::string text, std::string_view what, std::string_view with) {
  for (auto at = text.find(what); at != text.npos; at = text.find(what, at + with.size())) {
    text.replace(at, what.size(), with);
  }
  return text;
}

/// Names in braces and their values, filled in one after the other: a value may contain later names.
using Placeholders = std::vector<std::pair<std::string, std::string>>;

inline std::string Filled(std::string text, const Placeholders& placeholders) {
  for (const auto& [name, value] : placeholders) text = Replaced(std::move(text), name, value);
  return text;
}
