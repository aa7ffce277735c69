// A module that writes to the pasteboard and is unloaded.
#include "clipboard/Pasteboard.h"

extern "C" __attribute__((visibility("default"))) void WriteToPasteboard(const char* text) {
  const auto pasteboard = Pasteboard::Open();
  pasteboard->DeclareTypes(true, {"Mac-XMSS"});
  pasteboard->SetData("Mac-XMSS", text);
}
