// The browsers that may use the console.
#pragma once

#include <chrono>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "Store.h"

namespace service {

/// A browser comes with a token and gets a session for it, which outlives the service. Safe on any thread.
class Sessions {
 public:
  static constexpr std::chrono::seconds kLength = std::chrono::hours(30 * 24);

  /// Goes on with the sessions in `store`, which must outlive it.
  explicit Sessions(Store& store);

  /// A token that opens one session: within `valid`, or otherwise until the service ends. Only the newest few are kept.
  std::string NewToken(std::optional<std::chrono::seconds> valid = {});

  /// Uses a token up. Returns the secret of a new session; nothing for a token that was never given, is used or too
  /// old.
  std::optional<std::string> Open(std::string_view token);

  /// True for the secret of a session that has not ended.
  bool Has(std::string_view secret) const;

 private:
  Store& store_;
  mutable std::mutex mutex_;
  std::vector<ConsoleSession> tokens_, sessions_;  // oldest first; a token, too, is known by its hash
};

}  // namespace service
