// Where the bridge's requests go and in whose name, as a copy for a background job to own.
#pragma once

#include <string>

struct Account {
  std::string baseUrl;
  std::string licenseKey;
};

/// The account in use. FileMaker's main thread only.
Account CurrentAccount();
