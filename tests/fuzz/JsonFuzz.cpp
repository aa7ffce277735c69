// The JSON routines agree with the reference on any text, alone and repeated over many blocks. Its first line is also
// the key to search for.
#include "net/Json.h"

#include "fuzz/Fuzz.h"
#include "plugin/net/JsonReference.h"

void Try(const std::string& input) {
  const std::string key = input.substr(0, input.find('\n'));
  std::string text = input;
  for (int round = 0; round < 3; ++round, text += text + "x") {
    Check(JsonEscape(text) == reference::JsonEscape(text));
    Check(NlToJsonArray(text) == reference::NlToJsonArray(text));
    // Also with the key inserted: few inputs contain it.
    for (const std::string& json : {text, text + "\"" + key + "\":\"" + text}) {
      Check(JsonGetString(json, key) == reference::JsonGetString(json, key));
    }
  }
}
