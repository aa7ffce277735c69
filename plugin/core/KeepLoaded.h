// Libraries that stay in memory when they are unloaded, because code of theirs may still run. Any thread.
#pragma once

/// From here on the library that holds `address` stays in memory.
void KeepLoaded(const void* address);

/// The same for the plug-in itself.
void KeepPluginLoaded();
