#include "console/Sessions.h"

#include <algorithm>
#include <limits>

#include "system/Cryptography.h"

namespace service {
namespace {

constexpr std::size_t kMostTokens = 20;
constexpr std::size_t kMostSessions = 50;

std::int64_t Milliseconds(std::chrono::seconds time) { return std::chrono::milliseconds(time).count(); }

// Compares with all of them, so that the time does not show how close a wrong secret is.
std::vector<ConsoleSession>::const_iterator Find(const std::vector<ConsoleSession>& entries, std::string_view secret,
                                                 std::int64_t now) {
  const auto text = [](const ContentHash& hash) {
    return std::string_view(reinterpret_cast<const char*>(hash.data()), hash.size());
  };
  const ContentHash hash = HashOf(secret);
  auto found = entries.end();
  for (auto entry = entries.begin(); entry != entries.end(); ++entry) {
    if (IsSameSecret(text(entry->hash), text(hash)) && entry->ends > now) found = entry;
  }
  return found;
}

void KeepNewest(std::vector<ConsoleSession>& entries, std::size_t most) {
  if (entries.size() > most) entries.erase(entries.begin(), entries.end() - static_cast<std::ptrdiff_t>(most));
}

}  // namespace

Sessions::Sessions(Store& store) : store_(store), sessions_(store.Sessions()) {}

std::string Sessions::NewToken(std::optional<std::chrono::seconds> valid) {
  std::string token = RandomKey();
  const std::int64_t ends = valid ? store_.Now() + Milliseconds(*valid) : std::numeric_limits<std::int64_t>::max();
  const std::lock_guard lock(mutex_);
  tokens_.push_back({HashOf(token), ends});
  KeepNewest(tokens_, kMostTokens);
  return token;
}

std::optional<std::string> Sessions::Open(std::string_view token) {
  const std::lock_guard lock(mutex_);
  const auto found = Find(tokens_, token, store_.Now());
  if (found == tokens_.end()) return std::nullopt;
  std::string secret = RandomKey();
  const ConsoleSession session{HashOf(secret), store_.Now() + Milliseconds(kLength)};
  store_.KeepSession(session, kMostSessions);
  tokens_.erase(found);  // only now: when the disk fails, the token is still good
  sessions_.push_back(session);
  KeepNewest(sessions_, kMostSessions);
  return secret;
}

bool Sessions::Has(std::string_view secret) const {
  const std::lock_guard lock(mutex_);
  return Find(sessions_, secret, store_.Now()) != sessions_.end();
}

}  // namespace service
