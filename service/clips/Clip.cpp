#include "clips/Clip.h"

#include <algorithm>

#include "design/Names.h"
#include "snippet/Snippet.h"

namespace service {
namespace {

constexpr char kTable[] = R"(
  CREATE TABLE clips (
    content INTEGER PRIMARY KEY REFERENCES contents (number) ON DELETE CASCADE,
    xml_type TEXT NOT NULL,
    title TEXT NOT NULL,
    tags TEXT NOT NULL DEFAULT '',   -- each with a line feed before and after it
    words TEXT NOT NULL))";

std::string_view Trimmed(std::string_view text) {
  constexpr std::string_view kSpace = " \t\r\n";
  const auto first = text.find_first_not_of(kSpace);
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(kSpace) - first + 1);
}

}  // namespace

std::optional<ClipEntry> DescribeClip(std::string_view xmlType, const std::optional<std::string_view>& label,
                                      std::string_view content) {
  if (!solution::IsSnippet(content)) return std::nullopt;
  ClipEntry entry{std::string(xmlType), {}, {}, solution::FoldCase(label.value_or(""))};
  std::string error;
  if (const auto snippet = solution::ReadSnippet(std::string(content), error)) {
    if (!snippet->xmlType.empty()) entry.xmlType = snippet->xmlType;
    entry.title = snippet->title;
    entry.words = solution::FoldCase(snippet->title + '\n' + snippet->text);
  } else {
    entry.title = "Unreadable " + (xmlType.empty() ? "snippet" : std::string(xmlType));
    entry.words = solution::FoldCase(entry.title);
  }
  return entry;
}

void KeepClip(Database& database, std::int64_t content, const ClipEntry& entry) {
  Statement(database,
            "INSERT INTO clips (content, xml_type, title, words) VALUES (?1, ?2, ?3, ?4)"
            " ON CONFLICT (content) DO NOTHING",
            content, entry.xmlType, entry.title, entry.words)
      .Step();
  Statement(database,
            "UPDATE clips SET words = words || char(10) || ?2 WHERE content = ?1 AND ?2 <> '' AND instr(words, ?2) = 0",
            content, entry.label)
      .Step();
}

void CreateClips(Database& database) {
  database.Execute(kTable);
  Statement rows(database,
                 "SELECT content, name, label, bytes FROM records JOIN contents ON contents.number = content"
                 " WHERE kind = 'push' ORDER BY records.number");
  while (rows.Step()) {
    std::int64_t content = 0;
    std::string xmlType, bytes;
    std::optional<std::string> label;
    rows.Read(content, xmlType, label, bytes);
    if (const auto entry = DescribeClip(xmlType, label, bytes)) KeepClip(database, content, *entry);
  }
}

std::vector<std::string> TagsIn(std::string_view text) {
  std::vector<std::string> tags;
  while (!text.empty()) {
    const std::string_view part = text.substr(0, text.find_first_of(",\n"));
    text.remove_prefix(std::min(part.size() + 1, text.size()));
    const std::string tag(Trimmed(part));
    if (!tag.empty() && std::find(tags.begin(), tags.end(), tag) == tags.end()) tags.push_back(tag);
  }
  return tags;
}

}  // namespace service
