// What events report as changed, so that the pages that show it read it again.
#pragma once

namespace service {

enum class Topic { kCommands, kRecords, kDesigns, kClips, kStatus };

}  // namespace service
