#include "core/State.h"

#include "core/Product.h"

// On Linux these are destroyed in reverse order when the plug-in is unloaded or the process ends, after the background
// threads. On macOS nothing static is destroyed, because a late job may still run.
std::string g_licenseKey;
std::string g_baseUrl = kDefaultBaseUrl;
std::string g_registeredFileName;
std::string g_pendingGetSchemaCmdId;
std::string g_pendingTargetFileName;
std::string g_latestVersion;
PendingCmd g_pendingCmd;

bool g_registered = false;
bool g_pendingSchemaReady = false;
std::int64_t g_pendingSchemaQueuedMs = 0;
std::atomic<bool> g_hasPendingCmd = false;
std::atomic<bool> g_pollInFlight = false;
std::int64_t g_lastPollMs = 0;
std::atomic<bool> g_versionCheckInFlight = false;
std::int64_t g_lastVersionCheckMs = 0;
std::size_t g_lastMirroredClipboardHash = 0;
std::size_t g_lastPreparedClipboardHash = 0;
std::int64_t g_lastClipboardPrepareMs = 0;
