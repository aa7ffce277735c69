// The JSON text routines against RapidJSON's writer and the C library's search.
#include <benchmark/benchmark.h>
#include <rapidjson/stringbuffer.h>
#include <rapidjson/writer.h>
#include <string.h>

#include <algorithm>
#include <string>
#include <vector>

#include "Ratio.h"
#include "SampleText.h"
#include "net/Json.h"

namespace {

using Writer = rapidjson::Writer<rapidjson::StringBuffer>;

bench::Comparison Escape(const std::string& of, bench::Turns texts, double demanded) {
  const auto ours = [texts]() mutable { benchmark::DoNotOptimize(JsonEscape(texts.Next())); };
  const auto rival = [texts]() mutable {
    const std::string& text = texts.Next();
    rapidjson::StringBuffer buffer;
    Writer(buffer).String(text.data(), static_cast<rapidjson::SizeType>(text.size()));
    benchmark::DoNotOptimize(buffer.GetString());
  };
  return {"JsonEscape of " + of + " : RapidJSON", texts.AverageSize(), ours, rival, demanded};
}

bench::Comparison Array(bench::Turns texts, double demanded) {
  const auto ours = [texts]() mutable { benchmark::DoNotOptimize(NlToJsonArray(texts.Next())); };
  const auto rival = [texts]() mutable {
    const std::string& lines = texts.Next();
    rapidjson::StringBuffer buffer;
    Writer writer(buffer);
    writer.StartArray();
    for (std::size_t at = 0; at < lines.size();) {
      const std::size_t end = std::min(lines.find('\r', at), lines.size());
      if (end > at) writer.String(lines.data() + at, static_cast<rapidjson::SizeType>(end - at));
      at = end + 1;
    }
    writer.EndArray();
    benchmark::DoNotOptimize(buffer.GetString());
  };
  return {"NlToJsonArray of names : RapidJSON", texts.AverageSize(), ours, rival, demanded};
}

/// Searches the texts for a key that occurs only in a member appended to them.
bench::Comparison Search(const std::string& in, const bench::Turns& heads, const std::string& key) {
  const std::string pattern = "\"" + key + "\":\"";
  bench::Turns texts = heads.Changed([&](const std::string& head) { return head + pattern + "42\"}"; });
  const auto ours = [texts, key]() mutable { benchmark::DoNotOptimize(JsonGetString(texts.Next(), key)); };
  const auto rival = [texts, pattern]() mutable {
    const std::string& text = texts.Next();
    benchmark::DoNotOptimize(memmem(text.data(), text.size(), pattern.data(), pattern.size()));
  };
  return {"JsonGetString in " + in + " : memmem", texts.AverageSize(), ours, rival, 1};
}

bench::Turns Repeated(const std::string& part, std::size_t size) {
  std::string text;
  while (text.size() < size) text += part;
  return {text, size};
}

}  // namespace

int main() {
  std::vector<bench::Comparison> comparisons;
  for (const std::size_t size : {4 << 10, 64 << 10, 1 << 20, 64 << 20}) {
    const std::size_t total = std::max<std::size_t>(size, 512 << 10);
    const bench::Turns xml(bench::CopiedXml(total), size);
    const bench::Turns commands =
        xml.Changed([](const std::string& text) { return "{\"xmlContent\":\"" + JsonEscape(text) + "\","; });
    comparisons.push_back(Escape("copied XML", xml, 1.5));
    comparisons.push_back(Escape("saved XML", {bench::SavedXml(total), size}, 1.4));
    comparisons.push_back(Escape("plain text", {bench::Prose(total), size}, 4));
    comparisons.push_back(Array({bench::NameList(total), size}, 3));
    comparisons.push_back(Search("a command with XML", commands, "fileName"));
    comparisons.push_back(
        Search("many members", Repeated(R"({"name":"Orders","types":"","size":"9"},)", size), "type"));
    comparisons.push_back(Search("many quotes", Repeated(R"("","":"",)", size), "xmlContent"));
  }
  return bench::Compare(comparisons);
}
