#include "net/curl/TransferThread.h"

#include <poll.h>
#include <sys/eventfd.h>
#include <unistd.h>

#include <climits>
#include <new>
#include <system_error>
#include <utility>

#include "core/HostProcess_linux.h"
#include "core/KeepLoaded.h"

namespace {

constexpr int kLongestWaitMs = 60'000;  // new transfers and libcurl's own timers end the wait earlier
constexpr int kPauseMs = 50;            // between two attempts if libcurl cannot wait
constexpr char kCancelled[] = "cancelled";

// Gives the calling thread a descriptor table of its own that holds only the standard streams and `kept`. libcurl does
// not mark its descriptors close-on-exec; in this table, programs that the host starts cannot inherit them. Before
// Linux 5.9 the table stays shared with the host.
void KeepDescriptorsToThisThread(int kept) {
  const auto after = static_cast<unsigned>(kept) + 1;
  if (close_range(after, UINT_MAX, CLOSE_RANGE_UNSHARE) != 0) return;
  if (kept > STDERR_FILENO + 1) close_range(STDERR_FILENO + 1, static_cast<unsigned>(kept) - 1, 0);
}

/// The transfers in progress and what they share. Transfer thread only.
class Transfers {
 public:
  Transfers() {
    curl_share_setopt(shared_.get(), CURLSHOPT_SHARE, CURL_LOCK_DATA_COOKIE);
    curl_share_setopt(shared_.get(), CURLSHOPT_SHARE, CURL_LOCK_DATA_SSL_SESSION);
  }
  ~Transfers() {
    for (const auto& transfer : running_) {
      curl_multi_remove_handle(multi_.get(), transfer->handle());
      transfer->Fail(kCancelled);
    }
  }

  /// Returns why the transfer could not start, or nullptr after taking ownership of it.
  const char* Add(std::unique_ptr<CurlTransfer>& transfer) noexcept {
    try {
      if (!multi_) multi_.reset(curl_multi_init());
      if (!multi_) throw std::bad_alloc();
      running_.reserve(running_.size() + 1);
      if (const char* refusal = transfer->Prepare(shared_.get())) return refusal;
    } catch (const std::bad_alloc&) {
      return curl_easy_strerror(CURLE_OUT_OF_MEMORY);
    }
    const CURLMcode added = curl_multi_add_handle(multi_.get(), transfer->handle());
    if (added != CURLM_OK) return curl_multi_strerror(added);
    running_.push_back(std::move(transfer));
    return nullptr;
  }

  void WaitAndProceed(int wakeDescriptor) {
    Wait(wakeDescriptor);
    int stillRunning = 0;
    curl_multi_perform(multi_.get(), &stillRunning);
    int messages = 0;
    while (const CURLMsg* message = curl_multi_info_read(multi_.get(), &messages)) {
      if (message->msg == CURLMSG_DONE) Finish(message->easy_handle, message->data.result);
    }
  }

 private:
  void Wait(int wakeDescriptor) {
    curl_waitfd wake{.fd = wakeDescriptor, .events = CURL_WAIT_POLLIN, .revents = 0};
    if (curl_multi_poll(multi_.get(), &wake, 1, kLongestWaitMs, nullptr) == CURLM_OK) return;
    pollfd order{.fd = wakeDescriptor, .events = POLLIN, .revents = 0};  // libcurl has no memory for its own wait
    poll(&order, 1, running_.empty() ? kLongestWaitMs : kPauseMs);
  }

  void Finish(CURL* handle, CURLcode code) {
    curl_multi_remove_handle(multi_.get(), handle);
    std::erase_if(running_, [&](const auto& transfer) {
      if (transfer->handle() != handle) return false;
      transfer->Finish(code);
      return true;
    });
  }

  // Destroyed last first: the handles, then the connections, which may use what is shared. multi_ is created by the
  // first transfer for which there is memory.
  std::unique_ptr<CURLSH, decltype(&curl_share_cleanup)> shared_{curl_share_init(), curl_share_cleanup};
  std::unique_ptr<CURLM, decltype(&curl_multi_cleanup)> multi_{nullptr, curl_multi_cleanup};
  std::vector<std::unique_ptr<CurlTransfer>> running_;
};

}  // namespace

void TransferThread::Start(std::unique_ptr<CurlTransfer> transfer) {
  std::unique_lock lock(mutex_);
  const char* const refusal = stopping_ ? kCancelled : StartThread();
  if (refusal == nullptr) {
    arrived_.push_back(std::move(transfer));
    eventfd_write(wake_->get(), 1);
    return;
  }
  lock.unlock();
  transfer->Fail(refusal);
}

const char* TransferThread::StartThread() {
  if (thread_.joinable()) return nullptr;
  if (!hasCurl_) return "libcurl could not be initialised";
  // A thread that libcurl has started for a name look-up may outlive the plug-in.
  KeepLoaded(reinterpret_cast<const void*>(&curl_easy_init));
  wake_.emplace(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK));
  if (!wake_->IsOpen()) return "too many open files";
  try {
    const SignalsBlocked blocked;  // including SIGPIPE, which TLS connections can raise
    thread_ = std::thread([this] { Run(); });
  } catch (const std::system_error&) {
    return "no thread could be started";
  }
  return nullptr;
}

void TransferThread::Run() {
  ScheduleAsBatch();
  const int wake = wake_->get();
  KeepDescriptorsToThisThread(wake);
  Transfers transfers;
  for (;;) {
    Orders orders = TakeOrders();
    for (auto& transfer : orders.transfers) {
      const char* refusal = orders.stop ? kCancelled : transfers.Add(transfer);
      if (refusal != nullptr) transfer->Fail(refusal);
    }
    if (orders.stop) return;
    transfers.WaitAndProceed(wake);
  }
}

TransferThread::Orders TransferThread::TakeOrders() {
  const std::lock_guard lock(mutex_);
  eventfd_t ignored;
  eventfd_read(wake_->get(), &ignored);
  return {stopping_, std::exchange(arrived_, {})};
}

void TransferThread::Stop() {
  {
    const std::lock_guard lock(mutex_);
    stopping_ = true;
    if (!thread_.joinable()) return;
    eventfd_write(wake_->get(), 1);
  }
  thread_.join();
}
