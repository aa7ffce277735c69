// Keeps libraries in memory beyond their unload, for threads that may still run their code. Any thread.
#pragma once

/// From here on the library that holds `address` stays in memory.
void KeepLoaded(const void* address);

/// The same for the plug-in itself.
void KeepPluginLoaded();
