// Needs macOS 13.3: the stand-in SDK must refuse it for macOS 11, as Apple's does.
#include <charconv>

char* Write(char* first, char* last, double value) { return std::to_chars(first, last, value).ptr; }
