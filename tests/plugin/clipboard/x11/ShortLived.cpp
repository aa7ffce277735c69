// A module that is unloaded, and a program that ends, having written to the pasteboard.
#include "clipboard/Pasteboard.h"

extern "C" __attribute__((visibility("default"))) void WriteToPasteboard(const char* text) {
  const auto pasteboard = Pasteboard::Open();
  pasteboard->DeclareTypes(true, {"Mac-XMSS"});
  pasteboard->SetData("Mac-XMSS", text);
  pasteboard->SetString(text);
}

// A thread that a silent server holds is not joined before the program ends, when libXau frees what it used.
extern "C" __attribute__((visibility("default"), used)) const char* __tsan_default_suppressions() {
  return "race:libXau.so\n";
}

int main() { WriteToPasteboard("text"); }
