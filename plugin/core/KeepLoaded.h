// Keeps libraries in memory beyond their unload, for threads that may still run their code. Any thread.
#pragma once

/// Keeps the library that contains `address` in memory from here on.
void KeepLoaded(const void* address);

/// Does the same for the plug-in itself.
void KeepPluginLoaded();
