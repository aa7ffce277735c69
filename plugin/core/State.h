// The state that units of the plug-in share: one set of variables for the process, each group with the one unit that
// writes it; the other units only read. Times are steady milliseconds; all start at 0.
//
// FileMaker's main thread only, unless marked otherwise.
#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <string>

/// A command of the service, as a poll received it.
struct PendingCmd {
  std::string id;
  std::string type;
  std::string json;  ///< the whole answer, from which the handlers take their arguments
};

// The sign-in: bridge/SignIn
extern std::string g_licenseKey;          ///< the account key in use
extern std::string g_baseUrl;             ///< origin of the service
extern std::string g_registeredFileName;  ///< file from which the bridge was signed in
extern bool g_registered;                 ///< signed in; the bridge runs

// The schema request: bridge/SchemaRequest
extern std::string g_pendingGetSchemaCmdId;   ///< command that waits for its live push; "" when none does
extern std::string g_pendingTargetFileName;   ///< file that must be active before the live-push script starts
extern bool g_pendingSchemaReady;             ///< the wait for that file is armed
extern std::int64_t g_pendingSchemaQueuedMs;  ///< when it was armed

// Asking the service: bridge/Polling. The poll fills g_pendingCmd on its own thread, then raises g_hasPendingCmd; after
// that g_pendingCmd belongs to the main thread until the next poll starts.
extern PendingCmd g_pendingCmd;
extern std::atomic<bool> g_hasPendingCmd;         ///< any thread
extern std::atomic<bool> g_pollInFlight;          ///< at most one poll runs at a time; any thread
extern std::int64_t g_lastPollMs;                 ///< when the last poll was started
extern std::atomic<bool> g_versionCheckInFlight;  ///< at most one check runs at a time; any thread
extern std::int64_t g_lastVersionCheckMs;         ///< when the last check was started

// The newest version, as the service reported it, "" until a check has succeeded: only net/VersionCheck uses it, under
// its mutex
extern std::string g_latestVersion;

// The clipboard's upkeep: bridge/ClipboardUpkeep
extern std::size_t g_lastMirroredClipboardHash;
extern std::size_t g_lastPreparedClipboardHash;
extern std::int64_t g_lastClipboardPrepareMs;
