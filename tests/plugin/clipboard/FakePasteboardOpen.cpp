// The pasteboard seam for tests: whatever FakePasteboard the test has made current.
#include "support/FakePasteboard.h"

std::unique_ptr<Pasteboard> Pasteboard::Open() {
  return std::make_unique<FakePasteboardAccess>(*FakePasteboard::Current());
}
