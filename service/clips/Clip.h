// Clips: the snippets that came from FileMaker's clipboard, each content once.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "Database.h"

namespace service {

struct Clip {
  std::int64_t id = 0;  ///< of its content
  std::string xmlType;
  std::string title;
  std::optional<std::string> label;  ///< the newest that it came with
  std::string receivedAt;            ///< when it came last; UTC, ISO 8601 with milliseconds
  std::int64_t times = 0;            ///< how often it came
  std::int64_t bytes = 0;
  std::vector<std::string> tags;
};

/// What clips are looked for; empty members do not restrict.
struct ClipFilter {
  std::string text;  ///< in title, label or content, in any case
  std::string xmlType;
  std::string tag;
};

struct ClipList {
  std::int64_t total = 0;   ///< of all that were found
  std::vector<Clip> clips;  ///< newest first
};

/// What the table of clips says about a content.
struct ClipEntry {
  std::string xmlType, title;
  std::string words;  ///< title and text as FoldCase returns them, for the search
  std::string label;  ///< the same of the label
};

/// Describes a push or an added clip. Returns nothing when `content` is no clipboard XML. Content that cannot be read
/// keeps the type that it came with.
std::optional<ClipEntry> DescribeClip(std::string_view xmlType, const std::optional<std::string_view>& label,
                                      std::string_view content);

/// Makes `content`, the number of a row, a clip if it is none.
void KeepClip(Database& database, std::int64_t content, const ClipEntry& entry);

/// Creates the table and fills it from the records that there are.
void CreateClips(Database& database);

/// The tags in "a, b": without spaces around them, each once.
std::vector<std::string> TagsIn(std::string_view text);

}  // namespace service
