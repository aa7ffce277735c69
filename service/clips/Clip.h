// Clips: the snippets that came from FileMaker's clipboard, one clip for each different content.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "store/Database.h"

namespace service {

struct Clip {
  std::int64_t id = 0;  ///< the number of its content
  std::string xmlType;
  std::string title;
  std::optional<std::string> label;  ///< of the newest record that had one
  std::string receivedAt;            ///< when it was last received; UTC, ISO 8601 with milliseconds
  std::int64_t times = 0;            ///< how often it was received
  std::int64_t bytes = 0;
  std::vector<std::string> tags;
};

/// Which clips to find; empty members do not restrict.
struct ClipFilter {
  std::string text;  ///< in title, label or content, in any case
  std::string xmlType;
  std::string tag;
};

struct ClipList {
  std::int64_t total = 0;   ///< how many were found, even beyond the limit
  std::vector<Clip> clips;  ///< newest first
};

/// What the table of clips stores about a content.
struct ClipEntry {
  std::string xmlType, title;
  std::string words;  ///< title and text as FoldCase returns them, for the search
  std::string label;  ///< the label, folded in the same way
};

/// Describes a push or an added clip. Returns nothing when `content` is not clipboard XML. Content that cannot be
/// parsed keeps `xmlType`, the type that it was sent with.
std::optional<ClipEntry> DescribeClip(std::string_view xmlType, const std::optional<std::string_view>& label,
                                      std::string_view content);

/// Makes the content with the number `content` a clip, unless it is one.
void KeepClip(Database& database, std::int64_t content, const ClipEntry& entry);

/// Creates the table of clips and fills it from the existing records.
void CreateClips(Database& database);

/// The tags in a text such as "a, b", without surrounding spaces, each once.
std::vector<std::string> TagsIn(std::string_view text);

}  // namespace service
