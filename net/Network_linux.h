// The beginning and the end of the URL layer, which on Linux lives inside the plug-in.
#pragma once

/// Readies the libraries below, which register their own end with the process. What is made afterwards is destroyed
/// before them. Any thread.
void PrepareTransfers();

/// Cuts all transfers short: they, and those started from now on, fail. Their completions have been called when this
/// returns. Any thread but those of transfers.
void StopTransfers();
