// The JSON text routines: the cases of the wire format by name, everything else against the plain reference.
#include "net/Json.h"

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <string_view>
#include <vector>

#include "net/JsonRecord.h"
#include "tests/net/JsonReference.h"

namespace {

using namespace std::string_literals;

std::string EveryByte() {
  std::string bytes;
  for (int byte = 0; byte < 256; ++byte) bytes += static_cast<char>(byte);
  return bytes;
}

std::string RandomText(std::mt19937& random, const std::string& alphabet, std::size_t size) {
  std::string text(size, ' ');
  for (char& byte : text) byte = alphabet[random() % alphabet.size()];
  return text;
}

/// Texts of every size up to a few of the 64-byte blocks that the routines work in, and of sizes around their
/// multiples.
std::vector<std::string> RandomTexts(const std::string& alphabet) {
  std::mt19937 random(1);
  std::vector<std::string> texts;
  for (std::size_t size = 0; size < 300; ++size) texts.push_back(RandomText(random, alphabet, size));
  for (std::size_t size = 1000; size < 1100; ++size) texts.push_back(RandomText(random, alphabet, size));
  for (int i = 0; i < 30; ++i) texts.push_back(RandomText(random, alphabet, random() % 20000));
  return texts;
}

struct Case {
  std::string input, expected;
};

TEST(JsonEscape, WritesTheShortestFormsOfTheWireFormat) {
  const Case cases[] = {
      {"", ""},
      {"plain / text", "plain / text"},
      {"\t\n\r\"\\", "\\t\\n\\r\\\"\\\\"},
      {"a\tb\"c\x01", "a\\tb\\\"c\\u0001"},
      {"\b\f\x1b\x1f"s, "\\u0008\\u000c\\u001b\\u001f"},
      {"\0"s, "\\u0000"},
      {"\x7f\xc3\xa9\xff", "\x7f\xc3\xa9\xff"},
  };
  for (const Case& c : cases) EXPECT_EQ(JsonEscape(c.input), c.expected);
}

TEST(JsonEscape, TreatsEveryByteAlikeAtEveryPlace) {
  for (const char byte : EveryByte()) {
    for (std::size_t at = 0; at < 200; ++at) {
      std::string text(200, 'x');
      text[at] = byte;
      ASSERT_EQ(JsonEscape(text), reference::JsonEscape(text)) << static_cast<int>(byte) << " at " << at;
    }
  }
}

TEST(JsonEscape, AgreesWithTheReferenceOnRandomTexts) {
  for (const std::string& alphabet : {EveryByte(), "\x01\x02"s, "\t\n\"\\\x01 ab"s, std::string(60, 'x') + "\"\n"}) {
    for (const std::string& text : RandomTexts(alphabet)) ASSERT_EQ(JsonEscape(text), reference::JsonEscape(text));
  }
}

TEST(JsonEscape, TakesLittleMoreMemoryThanTheResult) {
  const std::string plain(1 << 18, 'x'), control(1 << 18, '\x01');
  std::vector<std::string> texts = {plain, control, std::string(1 << 18, '"'), plain + control, control + plain};
  for (std::size_t blocks = 1; blocks < 40; ++blocks) {  // whatever is taken for a sample may be the plain part
    texts.emplace_back();
    while (texts.back().size() < plain.size()) texts.back() += std::string(64, 'x') + std::string(64 * blocks, '\x01');
  }
  for (const std::string& text : texts) {
    const std::string escaped = JsonEscape(text);
    EXPECT_LT(escaped.capacity(), escaped.size() + escaped.size() / 2);
  }
  EXPECT_LT(JsonEscape(plain).capacity(), plain.size() + plain.size() / 32);
  const std::string record = JsonRecord({{"a", plain}, {"b", "\n"}});
  EXPECT_EQ(record, "{\"a\":\"" + plain + "\",\"b\":\"\\n\"}");
  EXPECT_LT(record.capacity(), plain.size() + plain.size() / 32);
}

TEST(JsonGetString, FindsAndUnescapesTheFirstStringOfThatKey) {
  struct {
    std::string json, key, expected;
  } const cases[] = {
      {R"({"id":"5"})", "id", "5"},
      {R"({"id":"a\"b"})", "id", "a\"b"},
      {R"({"id": "5"})", "id", ""},
      {R"({"id":5})", "id", ""},
      {R"({"command":null})", "command", ""},
      {R"({"id":[],"x":{"id":"inner"},"id":"outer"})", "id", "inner"},
      {R"({"text":"\"id\":\"x\"","id":"y"})", "id", "y"},
      {R"("id":"unclosed)", "id", "unclosed"},
      {R"("id":"\n\r\t\b\f\/\\\u0041")", "id", "\n\r\tbf/\\u0041"},
      {R"("id":"last\)", "id", "last\\"},
      {R"("id":"\\")", "id", "\\"},
      {R"("id":"")", "id", ""},
      {R"("id":")", "id", ""},
      {R"({"":"no name"})", "", "no name"},
      {"", "id", ""},
  };
  for (const auto& c : cases) EXPECT_EQ(JsonGetString(c.json, c.key), c.expected) << c.json;
}

TEST(JsonGetString, FindsTheKeyAtEveryPlaceAmongNearMisses) {
  for (const std::string_view filler : {" ", "\"", ":", "\"id\":", "\"ie\":\"", "\\\""}) {
    std::string json;
    while (json.size() < 200) {
      const std::string member = json + R"("id":"v\\\")" + json + R"(","id":"w")";
      ASSERT_EQ(JsonGetString(member, "id"), reference::JsonGetString(member, "id")) << member;
      json += filler;
    }
  }
}

TEST(JsonGetString, AgreesWithTheReferenceOnRandomTexts) {
  for (const std::string& alphabet : {"\"\\nx"s, "\\nrt/"s, "ab\"\"::\\"s, EveryByte()}) {
    for (const std::string& text : RandomTexts(alphabet)) {
      const std::string json = text + "\"a\":\"" + text;
      for (const std::string key : {"a", "b", "", "ab", "no such key"}) {
        ASSERT_EQ(JsonGetString(json, key), reference::JsonGetString(json, key)) << json;
      }
    }
  }
}

TEST(NlToJsonArray, KeepsTheLinesThatAreNotEmpty) {
  const Case cases[] = {
      {"", "[]"},
      {"\r\n\n\r", "[]"},
      {"a\r\n\r\nb\r", R"(["a","b"])"},
      {"\n\na", R"(["a"])"},
      {"a\nb\rc\r\nd", R"(["a","b","c","d"])"},
      {" \n\t\n a ", R"([" ","\t"," a "])"},
      {"say \"x\"\r\\", R"(["say \"x\"","\\"])"},
  };
  for (const Case& c : cases) EXPECT_EQ(NlToJsonArray(c.input), c.expected);
}

TEST(NlToJsonArray, SeparatesLinesThatEndWhereABlockDoes) {
  const std::size_t sizes[] = {1, 63, 64, 65, 127, 128, 960, 1023, 1024, 1088, 2048};
  for (const std::size_t first : sizes) {
    for (const std::size_t second : sizes) {
      for (const std::string& line_end : {"\n"s, "\r\n"s, "\n\n\n"s}) {
        const std::string text = std::string(first, 'a') + line_end + std::string(second, 'b') + line_end + "c";
        ASSERT_EQ(NlToJsonArray(text), reference::NlToJsonArray(text)) << first << ' ' << second;
      }
    }
  }
}

TEST(NlToJsonArray, AgreesWithTheReferenceOnRandomTexts) {
  for (const std::string& alphabet :
       {"\r\n"s, "a\r\n"s, "\r\"\n\t\\"s, std::string(30, 'x') + "\r\n", std::string(200, 'x') + "\r", EveryByte()}) {
    for (const std::string& text : RandomTexts(alphabet))
      ASSERT_EQ(NlToJsonArray(text), reference::NlToJsonArray(text));
  }
}

}  // namespace
