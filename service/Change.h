// What can change while a page shows it.
#pragma once

namespace service {

enum class Change { kCommands, kRecords, kDesigns, kClips, kStatus };

}  // namespace service
