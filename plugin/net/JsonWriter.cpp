#include "net/JsonWriter.h"

#include <utility>

#include "net/Base64.h"
#include "net/Json.h"

JsonWriter::JsonWriter(std::size_t expectedSize) {
  json_.reserve(expectedSize);
  json_ += '{';
}

// What precedes a member or an object is the opening bracket of its container, or the end of the one before it.
void JsonWriter::Separate() {
  if (json_.back() != '{' && json_.back() != '[') json_ += ',';
}

void JsonWriter::Name(std::string_view name) {
  Separate();
  json_.append("\"").append(name).append("\":");
}

JsonWriter& JsonWriter::Text(std::string_view name, std::string_view value) {
  Name(name);
  json_ += '"';
  JsonAppendEscaped(value, json_);
  json_ += '"';
  return *this;
}

JsonWriter& JsonWriter::Base64(std::string_view name, std::string_view bytes) {
  Name(name);
  json_ += '"';
  Base64Append(bytes, json_);
  json_ += '"';
  return *this;
}

JsonWriter& JsonWriter::Flag(std::string_view name, bool value) {
  Name(name);
  json_ += value ? "true" : "false";
  return *this;
}

JsonWriter& JsonWriter::Lines(std::string_view name, std::string_view text) {
  Name(name);
  JsonAppendLines(text, json_);
  return *this;
}

JsonWriter& JsonWriter::BeginArray(std::string_view name) {
  Name(name);
  json_ += '[';
  return *this;
}

JsonWriter& JsonWriter::BeginObject() {
  Separate();
  json_ += '{';
  return *this;
}

JsonWriter& JsonWriter::EndObject() {
  json_ += '}';
  return *this;
}

JsonWriter& JsonWriter::EndArray() {
  json_ += ']';
  return *this;
}

std::string JsonWriter::Finish() {
  json_ += '}';
  return std::move(json_);
}
