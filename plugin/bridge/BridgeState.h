// The bridge's state: one set of variables for the process. Times are steady milliseconds. Everything is read and
// written on FileMaker's main thread only, except the atomics and g_pendingCmd, which a poll fills before it raises
// g_hasPendingCmd.
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

extern std::string g_licenseKey;             ///< the account key in use
extern std::string g_baseUrl;                ///< origin of the service
extern std::string g_registeredFileName;     ///< file from which the bridge was signed in
extern std::string g_pendingGetSchemaCmdId;  ///< schema request that waits for its live push
extern std::string g_pendingTargetFileName;  ///< file that must be active before the live-push script starts
extern PendingCmd g_pendingCmd;              ///< handed from the poll to the idle call

extern bool g_registered;  ///< signed in; the bridge runs

extern bool g_pendingSchemaReady;             ///< a schema wait is armed
extern std::int64_t g_pendingSchemaQueuedMs;  ///< when it was armed
extern std::int64_t g_lastPollMs;             ///< when the last poll was started
extern std::size_t g_lastMirroredClipboardHash;
extern std::size_t g_lastPreparedClipboardHash;
extern std::int64_t g_lastClipboardPrepareMs;
extern std::atomic<bool> g_hasPendingCmd;
extern std::atomic<bool> g_pollInFlight;
