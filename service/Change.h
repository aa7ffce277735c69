// What can change while somebody looks at it.
#pragma once

namespace service {

enum class Change { kCommands, kRecords, kDesigns, kClips, kStatus };

}  // namespace service
