// The end of the background threads, which on Linux live inside the plug-in.
#pragma once

/// A descriptor that becomes readable when all jobs are to end, because the plug-in is unloaded or the process ends. A
/// job that waits for anything but a transfer watches it. Any thread.
int EndOfJobs();
