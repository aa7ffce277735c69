// The end of the background threads, which on Linux belong to the plug-in.
#pragma once

/// A descriptor that becomes readable when all jobs must end because the plug-in is unloaded or the process ends. A
/// job that waits for anything other than a transfer must watch it. The pool owns the descriptor. Any thread.
int EndOfJobs();
