// Percent-encoding for URLs. Safe on any thread.
#pragma once

#include <string>

/// `bytes` with every byte except ASCII letters, digits and "-._~" as "%" and two upper-case hexadecimal digits.
std::string PercentEncode(const std::string& bytes);
