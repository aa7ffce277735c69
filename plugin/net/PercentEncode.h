// Percent-encoding for URLs.
#pragma once

#include <string>

/// `bytes` with all but ASCII letters, digits and "-._~" as "%" and two upper-case hexadecimal digits.
std::string PercentEncode(const std::string& bytes);
