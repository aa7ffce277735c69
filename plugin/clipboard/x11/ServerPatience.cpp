// A separate unit, so that tests can replace it with a limit that even a loaded machine does not reach.
#include "clipboard/x11/Connection.h"

std::chrono::milliseconds x11::ServerPatience() { return std::chrono::seconds(2); }
