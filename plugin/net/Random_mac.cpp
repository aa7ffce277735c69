#include <stdlib.h>

#include "net/Random.h"

std::uint32_t RandomNumber() noexcept { return arc4random(); }
