// Start-up of the plug-in. FileMaker's main thread only.
#pragma once

/// Restores a saved sign-in and registers the external functions. The result is what FileMaker expects of an
/// initialise message: 76 when the plug-in is to be enabled, -2 when it is not.
short Do_PluginInit(short hostExtensionVersion);
