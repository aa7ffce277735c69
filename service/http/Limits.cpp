#include "http/Limits.h"

#include <sys/resource.h>

#include <algorithm>

#include "http/HttpError.h"

namespace service {

Body::Body(BodyLimit& limit, std::size_t most) : limit_(limit), most_(std::min(most, limit.bytes_)) {}

void Body::Announce(std::size_t bytes) const {
  if (bytes > most_) throw HttpError(413, "the body is larger than " + std::to_string(most_) + " bytes");
}

void Body::Append(std::string_view bytes) {
  Announce(bytes_.size() + bytes.size());
  if ((limit_.held_ += bytes.size()) > 2 * limit_.bytes_) {
    limit_.held_ -= bytes.size();
    throw HttpError(503, "too many large requests at the same time");
  }
  bytes_.append(bytes);
}

std::size_t ReserveConnections() {
  constexpr rlim_t kOthers = 160;  // databases in each thread, streams of events, the standard streams, libraries
  rlimit limit{};
  if (getrlimit(RLIMIT_NOFILE, &limit) != 0) return kConnections / 4;
  const rlim_t wanted = std::min<rlim_t>(limit.rlim_max, kConnections + kOthers);
  if (limit.rlim_cur < wanted) {
    limit.rlim_cur = wanted;
    setrlimit(RLIMIT_NOFILE, &limit);
    getrlimit(RLIMIT_NOFILE, &limit);
  }
  return static_cast<std::size_t>(std::clamp<rlim_t>(limit.rlim_cur, kOthers + 1, kConnections + kOthers) - kOthers);
}

}  // namespace service
