// The beginning and the end of the URL layer, which on Linux lives inside the plug-in.
#pragma once

/// Readies the URL layer, without starting anything. Static objects that are made afterwards are destroyed before it.
/// Any thread.
void PrepareTransfers();

/// Cuts all transfers short: they, and those started from now on, fail. Their completions have been called when this
/// returns. Any thread but those of transfers.
void StopTransfers();
