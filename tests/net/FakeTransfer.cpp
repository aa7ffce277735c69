// The seam to the URL layer for tests: the FakeUrlLayer of the running one.
#include "tests/support/FakeUrlLayer.h"

bool Network::IsURL(const std::string& text) { return text.find(' ') == text.npos; }

void Network::StartTransfer(Request request, std::function<void(Outcome)> completion) {
  const void* body = request.body.data();
  FakeUrlLayer::Current()->Take({.url = std::move(request.url),
                                 .method = request.method,
                                 .headers = {request.headers.begin(), request.headers.end()},
                                 .body = std::move(request.body),
                                 .bodyAddress = body},
                                std::move(completion));
}
