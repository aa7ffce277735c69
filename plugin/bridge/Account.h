// The service and the account that a request of the bridge uses. A background job owns a copy.
#pragma once

#include <string>
#include <string_view>

struct Account {
  std::string baseUrl;     ///< origin of the service; paths are appended to it
  std::string licenseKey;  ///< the account key

  bool operator==(const Account&) const = default;
};

/// The account in use. FileMaker's main thread only.
Account CurrentAccount();

/// `text` with every occurrence of `licenseKey` replaced by "[account key]", even where some of its bytes are
/// percent-encoded. For texts that other people or programs may read. Any thread.
std::string WithoutKey(std::string_view text, std::string_view licenseKey);
