// Writes the JSON objects that the plug-in sends and returns.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

/// One object, written member by member in the order of the calls, on one line without spaces. Values are escaped as
/// JsonEscape does; names must not need it. Values are appended in place, so that a large one is in memory only once.
class JsonWriter {
 public:
  /// Reserves `expectedSize` bytes.
  explicit JsonWriter(std::size_t expectedSize = 0);

  JsonWriter& Text(std::string_view name, std::string_view value);
  JsonWriter& Base64(std::string_view name, std::string_view bytes);
  JsonWriter& Flag(std::string_view name, bool value);
  /// The non-empty lines of `text` as an array of strings, as NlToJsonArray does.
  JsonWriter& Lines(std::string_view name, std::string_view text);

  /// An array of objects. The calls between BeginObject and EndObject write the members of one of them.
  JsonWriter& BeginArray(std::string_view name);
  JsonWriter& BeginObject();
  JsonWriter& EndObject();
  JsonWriter& EndArray();

  /// Closes the object and returns its text. The writer must not be used afterwards.
  std::string Finish();

 private:
  void Separate();
  void Name(std::string_view name);

  std::string json_;
};
