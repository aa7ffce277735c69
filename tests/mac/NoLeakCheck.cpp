// The Objective-C runtime and GNUstep keep tables and objects for good, so the leak sanitizer is turned off.

extern "C" __attribute__((visibility("default"))) int __lsan_is_turned_off();
int __lsan_is_turned_off() { return 1; }
