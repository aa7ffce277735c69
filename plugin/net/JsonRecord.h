// The service's records: flat JSON objects of strings.
#pragma once

#include <initializer_list>
#include <string>

#include "core/NamedText.h"

/// {"name":"value",...} in the order given, on one line without blanks. The values are escaped here; the names must
/// need none.
std::string JsonRecord(std::initializer_list<NamedText> members);
