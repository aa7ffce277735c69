#include "net/JsonRecord.h"

#include "net/Json.h"

std::string JsonRecord(std::initializer_list<NamedText> members) {
  std::string record;
  for (const auto& [name, value] : members) {
    record.append(record.empty() ? "{\"" : ",\"").append(name).append("\":\"");
    JsonAppendEscaped(value, record);  // large ones are in memory only once
    record += '"';
  }
  record += '}';
  return record;
}
