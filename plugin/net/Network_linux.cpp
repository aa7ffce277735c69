// The URL layer on libcurl.
#include "net/Network_linux.h"

#include <memory>
#include <utility>

#include "core/HostProcess_linux.h"
#include "net/Transfer.h"
#include "net/UrlSyntax.h"
#include "net/curl/ParsedUrl.h"
#include "net/curl/TransferThread.h"

namespace {

TransferThread& Transfers() {
  static const OfThisProcess<TransferThread> thread;
  return *thread;
}

}  // namespace

bool Network::IsURL(const std::string& text) {
  return IsURLText(text) && (!IsWebURL(text) || ParsedUrl(text).IsValid());
}

void Network::StartTransfer(Request request, std::function<void(Outcome)> completion) {
  Transfers().Start(std::make_unique<CurlTransfer>(std::move(request), std::move(completion)));
}

void PrepareTransfers() { Transfers(); }

void StopTransfers() { Transfers().Stop(); }
