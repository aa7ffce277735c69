// Where the bridge's requests go and in whose name, as a copy for a background job to own.
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

/// `text` with "[account key]" in place of `licenseKey`, also where any of its bytes are percent-encoded: for texts
/// that others may read. Any thread.
std::string WithoutKey(std::string_view text, std::string_view licenseKey);
