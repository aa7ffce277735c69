// In a unit of its own, so that tests can put shorter limits in its place.
#include "net/Transfer.h"

namespace {
constexpr std::chrono::seconds kLimit{120};
}

std::chrono::milliseconds Network::TransferTimeLimit() { return kLimit; }
std::chrono::milliseconds Network::WaitTimeLimit() { return kLimit; }
