// The files of the console's page, which the build embeds.
#pragma once

#include <span>
#include <string_view>

namespace service {

struct WebFile {
  std::string_view name;  ///< below service/console/web, "views/files.js"
  std::string_view bytes;
};

std::span<const WebFile> WebFiles();

}  // namespace service
