// Files that the build embeds in the program.
#pragma once

#include <span>
#include <string_view>

namespace service {

struct EmbeddedFile {
  std::string_view name;  ///< below its folder, "pages/files.js"
  std::string_view bytes;
};

/// The console's page, from service/console/web.
std::span<const EmbeddedFile> WebFiles();

/// From samples/snippets.
std::span<const EmbeddedFile> Snippets();

}  // namespace service
