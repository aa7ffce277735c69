// The service and the account of the bridge's requests, as a copy that a background job owns.
#pragma once

#include <string>
#include <string_view>

struct Account {
  std::string baseUrl;
  std::string licenseKey;

  bool operator==(const Account&) const = default;
};

/// The account in use. FileMaker's main thread only.
Account CurrentAccount();

/// `text` with every occurrence of `licenseKey` replaced by "[account key]", even where some of its bytes are
/// percent-encoded. For texts that other people or programs may read. Any thread.
std::string WithoutKey(std::string_view text, std::string_view licenseKey);
