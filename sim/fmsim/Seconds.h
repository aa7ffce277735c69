// Durations on fmsim's command line and prompt.
#pragma once

#include <chrono>
#include <optional>
#include <string>

/// "1.5": a decimal number of seconds from 0 to a day. nullopt for anything else.
std::optional<std::chrono::milliseconds> ParseSeconds(const std::string& text);
