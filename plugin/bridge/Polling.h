// Asking the service for the next command.
#pragma once

/// Starts a poll when one is due and none is running. What it brings stands in g_pendingCmd once g_hasPendingCmd is
/// raised. FileMaker's main thread only.
void PollWhenDue();
