#include "plugin/mac/standin/StandIn.h"

#import <Foundation/Foundation.h>
#import <Foundation/NSDebug.h>

#include <cstdio>
#include <cstdlib>

void StandIn::Misuse(const std::string& what) {
  std::fprintf(stderr, "misuse of the system's interface: %s\n", what.c_str());
  std::abort();
}

int StandIn::FoundationObjects() {
  static const bool wasCounting = GSDebugAllocationActive(YES);
  static_cast<void>(wasCounting);
  int count = 0;
  Class* classes = GSDebugAllocationClassList();
  for (Class* each = classes; each != nullptr && *each != Nil; ++each) count += GSDebugAllocationCount(*each);
  free(classes);
  return count;
}
