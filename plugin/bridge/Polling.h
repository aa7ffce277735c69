// The bridge's periodic requests: for the next command every three seconds, and for the newest version once a day.
// FileMaker's main thread only; the requests run in the background, and their failures are silent.
#pragma once

#include <optional>

#include "core/State.h"

/// Starts a poll when one is due and none is running.
void PollWhenDue();

/// Takes the command that a poll has received; nothing when there is none.
std::optional<PendingCmd> TakeCommand();

/// Starts a check for a newer version unless one is running.
void CheckVersionInBackground();

/// Does the same, but only when a check is due.
void CheckVersionWhenDue();
