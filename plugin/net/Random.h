// The system's cryptographic random source. Safe on any thread; does not throw, as std::random_device may.
#pragma once

#include <cstdint>

std::uint32_t RandomNumber() noexcept;
