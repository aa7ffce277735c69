// The service's records: flat JSON objects of strings.
#pragma once

#include <initializer_list>
#include <string>

struct JsonMember {
  const char* name;  ///< needs no escaping
  const std::string& value;
};

/// {"name":"value",...} in the order given, on one line without blanks. The values are escaped here.
std::string JsonRecord(std::initializer_list<JsonMember> members);
