#include "clipboard/SystemPasteboard_mac.h"

NSPasteboard* SystemPasteboard() { return [NSPasteboard generalPasteboard]; }

CFStringRef SystemPasteboardName() { return kPasteboardClipboard; }
