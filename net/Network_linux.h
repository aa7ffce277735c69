// The end of the URL layer, which on Linux lives inside the plug-in.
#pragma once

/// Cuts all transfers short: they, and those started from now on, fail. Their completions have been called when this
/// returns. Any thread but those of transfers.
void StopTransfers();
