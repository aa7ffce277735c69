#include "bridge/BridgeState.h"

#include "core/Product.h"

// Destroyed in reverse when the plug-in is unloaded.
std::string g_licenseKey;
std::string g_baseUrl = kDefaultBaseUrl;
std::string g_registeredFileName;
std::string g_pendingGetSchemaCmdId;
std::string g_pendingTargetFileName;
PendingCmd g_pendingCmd;

bool g_registered = false;

bool g_pendingSchemaReady = false;
std::int64_t g_pendingSchemaQueuedMs = 0;
std::int64_t g_lastPollMs = 0;
std::size_t g_lastMirroredClipboardHash = 0;
std::size_t g_lastPreparedClipboardHash = 0;
std::int64_t g_lastClipboardPrepareMs = 0;
std::atomic<bool> g_hasPendingCmd = false;
std::atomic<bool> g_pollInFlight = false;
