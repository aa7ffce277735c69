// The URL layer on libcurl.
#include "net/Network_linux.h"

#include <memory>
#include <utility>

#include "net/Transfer.h"
#include "net/UrlSyntax.h"
#include "net/curl/TransferThread.h"

namespace {

TransferThread g_transferThread;

}  // namespace

bool Network::IsURL(const std::string& text) { return IsURLText(text); }

void Network::StartTransfer(Request request, std::function<void(Outcome)> completion) {
  g_transferThread.Start(std::make_unique<CurlTransfer>(std::move(request), std::move(completion)));
}

void PrepareTransfers() { curl_global_init(CURL_GLOBAL_DEFAULT); }

void StopTransfers() { g_transferThread.Stop(); }
