// Suppressed reports about the Objective-C runtime and GNUstep, which never free their tables and some objects, and
// which take their class locks in either order.

#define HOOK extern "C" __attribute__((visibility("default"), used))

HOOK int __lsan_is_turned_off() { return 1; }
HOOK const char* __tsan_default_suppressions() { return "deadlock:libgnustep-base.so\n"; }
