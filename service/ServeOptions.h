// What `serve` and `install` check before they change anything.
#pragma once

#include <string>

#include "Options.h"
#include "http/Server.h"

namespace service {

/// The address to listen on. Throws UsageError for an address, a key, or a combination of them with which the service
/// would not start.
ListenAddress CheckServeOptions(const Options& options);

/// Throws UsageError for a key that the plug-in cannot send.
void CheckSendable(const std::string& key);

}  // namespace service
