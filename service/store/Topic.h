// What an event reports as changed: pages that show it fetch it again.
#pragma once

namespace service {

enum class Topic { kCommands, kRecords, kDesigns, kClips, kStatus };

}  // namespace service
