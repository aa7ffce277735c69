// A unit of its own, which tests replace by a limit that no loaded machine reaches.
#include "clipboard/x11/Connection.h"

std::chrono::milliseconds x11::ServerPatience() { return std::chrono::seconds(2); }
