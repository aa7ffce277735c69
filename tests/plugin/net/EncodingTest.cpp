// The encodings of the protocol: named cases of the JSON format, and random texts against a plain reference.
#include "net/Json.h"

#include <gtest/gtest.h>
#include <netinet/in.h>
#include <resolv.h>

#include <random>
#include <string>
#include <tuple>
#include <vector>

#include "net/Base64.h"
#include "net/JsonWriter.h"
#include "plugin/net/JsonReference.h"
#include "support/Rows.h"

namespace {

using namespace std::string_literals;

using Words = std::vector<std::string>;

Words Bytes(const std::string& bytes) {
  Words words;
  for (const char byte : bytes) words.emplace_back(1, byte);
  return words;
}

TEST(JsonRoutines, WriteTheShortestFormsOfTheWireFormat) {
  const std::tuple<std::string (*)(std::string_view), std::string, std::string> cases[] = {
      {JsonEscape, "plain / text\t\n\r\"\\", "plain / text\\t\\n\\r\\\"\\\\"},
      {JsonEscape, "\0\b\f\x1b\x1f"s, "\\u0000\\u0008\\u000c\\u001b\\u001f"},
      {JsonEscape, "\x7f\xc3\xa9\xff", "\x7f\xc3\xa9\xff"},
      {NlToJsonArray, "\r\n\n\r", "[]"},
      {NlToJsonArray, "a\r\n\r\nb\r", R"(["a","b"])"},
      {NlToJsonArray, " \n\t\n say \"x\"\\", R"([" ","\t"," say \"x\"\\"])"},
  };
  for (const auto& [routine, text, json] : cases) EXPECT_EQ(routine(text), json);
}

TEST(JsonWriter, ReservesLittleMoreThanALargeValueNeeds) {
  const std::string large(1 << 20, 'x');
  JsonWriter json;
  const std::string text = json.Text("a", large).Flag("b", true).Text("c", "").Finish();
  EXPECT_EQ(text, R"({"a":")" + large + R"(","b":true,"c":""})");
  EXPECT_LT(text.capacity(), text.size() + text.size() / 4);
}

TEST(JsonGetString, FindsAndUnescapesTheFirstStringWithTheKey) {
  ExpectRows(DATA "/strings.txt", [](const auto& row) {
    const auto bar = row.find('|');
    return JsonGetString(row.substr(bar + 1), row.substr(0, bar));
  });
}

/// Texts of every size up to several of the 64-byte blocks that the routines use, and of many blocks.
TEST(JsonRoutines, AgreeWithTheReferenceOnRandomTexts) {
  const std::string block(64, 'x');
  Words every;
  for (int byte = 0; byte < 256; ++byte) every.emplace_back(1, static_cast<char>(byte));
  Words sparse = every;
  sparse.resize(512, block);
  const Words alphabets[] = {
      sparse,
      every,
      Bytes("\x01\x02"),
      Bytes("\t\n\"\\\x01 ab"),
      Bytes("\\nrt/"),
      Bytes("ab\"\"::\\"),
      Bytes("a\r\n"),
      {block, std::string(63, 'x') + "\n", "\n" + std::string(63, 'x'), "\r"},
  };
  std::mt19937 random(1);
  for (const Words& words : alphabets) {
    for (std::size_t size = 0; size < 20'000; size += size < 300 ? 1 : random() % 1000) {
      std::string text;
      while (text.size() < size) text += words[random() % words.size()];
      text.resize(size);
      ASSERT_EQ(JsonEscape(text), reference::JsonEscape(text));
      ASSERT_EQ(NlToJsonArray(text), reference::NlToJsonArray(text));
      const std::string json = text + "\"a\":\"" + text;
      for (const std::string key : {"a", "b", "", "no such key"}) {
        ASSERT_EQ(JsonGetString(json, key), reference::JsonGetString(json, key)) << json;
      }
    }
  }
}

std::string SystemsBase64(const std::string& bytes) {
  std::string result(bytes.size() * 2 + 4, '\0');
  const auto from = reinterpret_cast<const unsigned char*>(bytes.data());
  result.resize(static_cast<std::size_t>(b64_ntop(from, bytes.size(), result.data(), result.size())));
  return result;
}

TEST(Base64Encode, AgreesWithTheSystemLibraryAtEverySize) {
  std::mt19937 random(1);
  std::string bytes;
  while (bytes.size() < 7000) {
    ASSERT_EQ(Base64Encode(bytes), SystemsBase64(bytes)) << bytes.size();
    for (std::size_t more = bytes.size() / 300 + 1; more > 0; --more) bytes += static_cast<char>(random());
  }
}

}  // namespace
