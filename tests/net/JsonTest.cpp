// The JSON text routines: the cases of the wire format by name, everything else against the plain reference.
#include "net/Json.h"

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

#include "net/JsonRecord.h"
#include "tests/net/JsonReference.h"

namespace {

using namespace std::string_literals;

using Words = std::vector<std::string>;

Words Bytes(const std::string& bytes) {
  Words words;
  for (const char byte : bytes) words.emplace_back(1, byte);
  return words;
}

std::string EveryByte() {
  std::string bytes;
  for (int byte = 0; byte < 256; ++byte) bytes += static_cast<char>(byte);
  return bytes;
}

/// Texts of every size up to a few of the 64-byte blocks that the routines work in, of sizes around their multiples,
/// and of many blocks.
std::vector<std::string> RandomTexts(const Words& words) {
  std::mt19937 random(1);
  std::vector<std::size_t> sizes(400);
  for (std::size_t i = 0; i < sizes.size(); ++i) sizes[i] = i < 300 ? i : 700 + i;
  for (int i = 0; i < 30; ++i) sizes.push_back(random() % 20000);
  std::vector<std::string> texts;
  for (const std::size_t size : sizes) {
    std::string& text = texts.emplace_back();
    while (text.size() < size) text += words[random() % words.size()];
    text.resize(size);
  }
  return texts;
}

struct Case {
  std::string input, expected;
};

TEST(JsonEscape, WritesTheShortestFormsOfTheWireFormat) {
  const Case cases[] = {
      {"plain / text\t\n\r\"\\", "plain / text\\t\\n\\r\\\"\\\\"},
      {"\0\b\f\x1b\x1f"s, "\\u0000\\u0008\\u000c\\u001b\\u001f"},
      {"\x7f\xc3\xa9\xff", "\x7f\xc3\xa9\xff"},
  };
  for (const Case& c : cases) EXPECT_EQ(JsonEscape(c.input), c.expected);
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

TEST(NlToJsonArray, KeepsTheLinesThatAreNotEmpty) {
  const Case cases[] = {
      {"\r\n\n\r", "[]"},
      {"a\r\n\r\nb\r", R"(["a","b"])"},
      {" \n\t\n a ", R"([" ","\t"," a "])"},
      {"say \"x\"\r\\", R"(["say \"x\"","\\"])"},
  };
  for (const Case& c : cases) EXPECT_EQ(NlToJsonArray(c.input), c.expected);
}

TEST(JsonRoutines, AgreeWithTheReferenceOnRandomTexts) {
  const std::string block(64, 'x');
  Words lonely = Bytes(EveryByte());
  lonely.resize(512, block);
  const Words alphabets[] = {
      lonely,
      Bytes(EveryByte()),
      Bytes("\x01\x02"),
      Bytes("\t\n\"\\\x01 ab"),
      Bytes("\"\\nx"),
      Bytes("\\nrt/"),
      Bytes("ab\"\"::\\"),
      Bytes("a\r\n"),
      {std::string(30, 'x'), "\r", "\n"},
      {block, std::string(63, 'x') + "\n", "\n" + std::string(63, 'x')},
  };
  for (const Words& words : alphabets) {
    for (const std::string& text : RandomTexts(words)) {
      ASSERT_EQ(JsonEscape(text), reference::JsonEscape(text));
      ASSERT_EQ(NlToJsonArray(text), reference::NlToJsonArray(text));
      const std::string json = text + "\"a\":\"" + text;
      for (const std::string key : {"a", "b", "", "ab", "no such key"}) {
        ASSERT_EQ(JsonGetString(json, key), reference::JsonGetString(json, key)) << json;
      }
    }
  }
}

}  // namespace
