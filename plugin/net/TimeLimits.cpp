// A separate unit, so that tests can replace it with shorter limits.
#include "net/Transfer.h"

namespace {
constexpr std::chrono::seconds kLimit{120};
}

std::chrono::milliseconds Network::TransferTimeLimit() { return kLimit; }
std::chrono::milliseconds Network::WaitTimeLimit() { return kLimit; }
