// Start and end of the URL layer, which on Linux is part of the plug-in.
#pragma once

/// Prepares the URL layer without starting a thread. Static objects created afterwards are destroyed before it. Any
/// thread.
void PrepareTransfers();

/// Cancels all transfers. They fail, as do those started later, and their completions have been called when this
/// returns. Any thread except the transfer thread.
void StopTransfers();
