// The browsers that may use the console.
#pragma once

#include <chrono>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "store/Store.h"

namespace service {

/// A browser exchanges a token for a session, which outlives the service. Safe on any thread.
class Sessions {
 public:
  static constexpr std::chrono::seconds kLength = std::chrono::hours(30 * 24);

  /// Continues the sessions in `store`, which must outlive this.
  explicit Sessions(Store& store);

  /// A token that opens one session, within `valid` or by default until the service ends. Only the newest few are
  /// valid.
  std::string NewToken(std::optional<std::chrono::seconds> valid = {});

  /// Uses up `token` and returns the secret of a new session; nothing for a token that is unknown, used or expired.
  std::optional<std::string> Open(std::string_view token);

  /// True for the secret of a session that has not ended.
  bool Has(std::string_view secret) const;

 private:
  Store& store_;
  mutable std::mutex mutex_;
  std::vector<ConsoleSession> tokens_, sessions_;  // oldest first; only hashes, of tokens, too
};

}  // namespace service
