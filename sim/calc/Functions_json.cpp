// FileMaker's functions for JSON, based on the nlohmann library. Like FileMaker they list the keys of an object in
// alphabetical order, and for invalid JSON return "? " and the position of the error.
#include <algorithm>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>

#include "calc/Functions.h"
#include "calc/JsonPath.h"
#include "calc/Unicode.h"

namespace calc {
namespace {

using Json = nlohmann::json;

// The values of FileMaker's constants.
enum JsonType { kRaw, kString, kNumber, kObject, kArray, kBoolean, kNull };

constexpr std::size_t kMaxArray = 100000;  // a position beyond it would only fill memory

Value TextOf(const std::string& utf8) { return Value::OfText(ToUtf16(utf8)); }

Value NotJson(const std::string& text, std::size_t offset) {
  const auto at = std::min(offset == 0 ? 0 : offset - 1, text.size());
  const auto before = std::string_view(text).substr(0, at);
  const auto line = 1 + std::count_if(before.begin(), before.end(), [](char c) { return c == '\n' || c == '\r'; });
  const auto start = before.find_last_of("\r\n");
  const auto column = at - (start == before.npos ? 0 : start + 1) + 1;
  return TextOf("? * Line " + std::to_string(line) + ", Column " + std::to_string(column) +
                "\r  Syntax error: value, object or array expected.");
}

/// Parses `text`. The result is the document when `failure` is empty. Empty text is neither a document nor an error.
std::optional<Json> Parsed(const Value& text, Value& failure) {
  const std::string utf8 = ToUtf8(text.AsText());
  if (utf8.empty()) return std::nullopt;
  try {
    return Json::parse(utf8);
  } catch (const Json::parse_error& error) {
    failure = NotJson(utf8, error.byte);
    return std::nullopt;
  }
}

std::string Dump(const Json& json, int indent = -1) {
  return json.dump(indent, '\t', false, Json::error_handler_t::replace);
}

// The element that one path step selects; null when missing.
Json* Child(Json& parent, const JsonStep& step) {
  if (const auto* position = std::get_if<std::size_t>(&step)) {
    return parent.is_array() && *position < parent.size() ? &parent[*position] : nullptr;
  }
  const auto& key = std::get<std::string>(step);
  return parent.is_object() && parent.contains(key) ? &parent[key] : nullptr;
}

Json* Find(Json& document, const JsonPath& path) {
  Json* at = &document;
  for (auto step = path.begin(); at != nullptr && step != path.end(); ++step) at = Child(*at, *step);
  return at;
}

Value ValueOf(const Json& element) {
  switch (element.type()) {
    case Json::value_t::null:
      return {};
    case Json::value_t::string:
      return TextOf(element.get<std::string>());
    case Json::value_t::boolean:
      return Value::OfBoolean(element.get<bool>());
    case Json::value_t::number_integer:
    case Json::value_t::number_unsigned:
    case Json::value_t::number_float:
      return Value::OfNumber(Number::Parse(ToUtf16(Dump(element))).value_or(Number()));
    default:
      return TextOf(Dump(element));
  }
}

int TypeOf(const Json& element) {
  switch (element.type()) {
    case Json::value_t::null:
      return kNull;
    case Json::value_t::string:
      return kString;
    case Json::value_t::boolean:
      return kBoolean;
    case Json::value_t::array:
      return kArray;
    case Json::value_t::object:
      return kObject;
    default:
      return kNumber;
  }
}

/// The result of `use` for the element at the path; empty text when the element is missing.
template <typename Use>
Value WithElement(Arguments arguments, Use use) {
  Value failure;
  auto document = Parsed(arguments[0], failure);
  if (!document) return failure;
  const auto path = ParseJsonPath(ToUtf8(arguments[1].AsText()));
  const Json* element = path ? Find(*document, *path) : nullptr;
  return element == nullptr ? Value() : use(*element);
}

Value JSONGetElement(Arguments arguments) { return WithElement(arguments, ValueOf); }

Value JSONGetElementType(Arguments arguments) {
  return WithElement(arguments, [](const Json& element) { return Value::OfNumber(TypeOf(element)); });
}

template <typename Line>
Value Lines(const Json& container, Line line) {
  std::u16string lines;
  std::size_t index = 0;
  for (const auto& [key, element] : container.items()) {
    if (index++ > 0) lines += u'\r';
    lines += line(container.is_array() ? std::to_string(index - 1) : key, element);
  }
  return Value::OfText(lines);
}

Value JSONListKeys(Arguments arguments) {
  return WithElement(arguments, [](const Json& element) {
    if (!element.is_structured()) return Value();
    return Lines(element, [](const std::string& key, const Json&) { return ToUtf16(key); });
  });
}

Value JSONListValues(Arguments arguments) {
  return WithElement(arguments, [](const Json& element) {
    if (!element.is_structured()) return Value();
    return Lines(element, [](const std::string&, const Json& value) { return ValueOf(value).AsText(); });
  });
}

// A non-empty structure starts on a new line below its key.
std::string Formatted(const Json& json, const std::string& indent) {
  if (!json.is_structured() || json.empty()) return Dump(json);
  const std::string inner = indent + '\t';
  std::string text(1, json.is_array() ? '[' : '{');
  bool first = true;
  for (const auto& [key, element] : json.items()) {
    text += (first ? "\r" : ",\r") + inner;
    first = false;
    if (json.is_object()) {
      text += Dump(key) + " : ";
      if (element.is_structured() && !element.empty()) text += '\r' + inner;
    }
    text += Formatted(element, inner);
  }
  return text + '\r' + indent + (json.is_array() ? ']' : '}');
}

Value JSONFormatElements(Arguments arguments) {
  Value failure;
  const auto document = Parsed(arguments[0], failure);
  return document ? TextOf(Formatted(*document, "")) : failure;
}

Value JSONDeleteElement(Arguments arguments) {
  Value failure;
  auto document = Parsed(arguments[0], failure);
  if (!document) return failure;
  auto steps = ParseJsonPath(ToUtf8(arguments[1].AsText()));
  if (!steps || steps->empty()) return TextOf(Dump(*document));
  const JsonStep last = steps->back();
  steps->pop_back();
  Json* parent = Find(*document, *steps);
  if (parent != nullptr && Child(*parent, last) != nullptr) {
    std::visit([parent](const auto& step) { parent->erase(step); }, last);
  }
  return TextOf(Dump(*document));
}

// FileMaker omits the zero before the decimal point; JSON requires it.
Json NumberJson(const Value& value) {
  std::string text = ToUtf8(value.AsNumber().ToText());
  if (const auto point = text.find('.'); point == 0 || (point == 1 && text[0] == '-')) text.insert(point, "0");
  return Json::parse(text);
}

// As in FileMaker, a value that does not fit its type becomes text.
Json Converted(const Value& value, long long type) {
  const std::string text = ToUtf8(value.AsText());
  const auto parsed = [&text] { return Json::parse(text, nullptr, false); };
  switch (type) {
    case kNumber:
      return NumberJson(value);
    case kBoolean:
      return value.AsBoolean();
    case kNull:
      return nullptr;
    case kObject:
    case kArray:
    case kRaw:
      if (const Json json = text.empty() && type == kObject ? Json::object() : parsed(); !json.is_discarded())
        return json;
      return text;
    default:
      return text;
  }
}

// Creates missing elements along the path. False when a position is out of bounds.
bool Set(Json& document, const JsonPath& path, Json value) {
  Json* at = &document;
  for (const JsonStep& step : path) {
    if (const auto* position = std::get_if<std::size_t>(&step)) {
      if (*position > kMaxArray) return false;
      if (!at->is_array()) *at = Json::array();
      while (at->size() <= *position) at->push_back(nullptr);
      at = &(*at)[*position];
    } else {
      if (!at->is_object()) *at = Json::object();
      at = &(*at)[std::get<std::string>(step)];
    }
  }
  *at = std::move(value);
  return true;
}

Value JSONSetElement(Arguments arguments) {
  Value failure;
  auto parsed = Parsed(arguments[0], failure);
  if (!parsed && !arguments[0].AsText().empty()) return failure;
  Json document = parsed ? std::move(*parsed) : Json();
  for (std::size_t i = 1; i + 2 < arguments.size(); i += 3) {
    const auto path = ParseJsonPath(ToUtf8(arguments[i].AsText()));
    Json value = Converted(arguments[i + 1], arguments[i + 2].AsNumber().ToInteger());
    if (!path || !Set(document, *path, std::move(value))) return TextOf("? * Invalid path.");
  }
  return TextOf(Dump(document));
}

template <JsonType type>
Value Constant(Arguments) {
  return Value::OfNumber(type);
}

constexpr Builtin kJsonFunctions[] = {
    {u"JSONArray", {0, 0}, Constant<kArray>},
    {u"JSONBoolean", {0, 0}, Constant<kBoolean>},
    {u"JSONDeleteElement", {2, 2}, JSONDeleteElement},
    {u"JSONFormatElements", {1, 1}, JSONFormatElements},
    {u"JSONGetElement", {2, 2}, JSONGetElement},
    {u"JSONGetElementType", {2, 2}, JSONGetElementType},
    {u"JSONListKeys", {2, 2}, JSONListKeys},
    {u"JSONListValues", {2, 2}, JSONListValues},
    {u"JSONNull", {0, 0}, Constant<kNull>},
    {u"JSONNumber", {0, 0}, Constant<kNumber>},
    {u"JSONObject", {0, 0}, Constant<kObject>},
    {u"JSONRaw", {0, 0}, Constant<kRaw>},
    {u"JSONSetElement", {4, 4, 3}, JSONSetElement},
    {u"JSONString", {0, 0}, Constant<kString>},
};

}  // namespace

std::span<const Builtin> JsonFunctions() { return kJsonFunctions; }

}  // namespace calc
