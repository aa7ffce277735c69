// Carbon's Pasteboard Manager and as much of Core Foundation as it takes, over the pasteboard that a test has made
// current. Declared as in Apple's headers.
#pragma once

#include <cstdint>

using UInt8 = std::uint8_t;
using Boolean = unsigned char;
using OSStatus = std::int32_t;
using ItemCount = unsigned long;

using CFIndex = long;
using CFTypeRef = const void*;
using CFAllocatorRef = const struct __CFAllocator*;
using CFStringRef = const struct __CFString*;
using CFDataRef = const struct __CFData*;
using CFStringEncoding = std::uint32_t;

constexpr CFAllocatorRef kCFAllocatorDefault = nullptr;
constexpr CFStringEncoding kCFStringEncodingUTF8 = 0x08000100;

void CFRelease(CFTypeRef object);
CFStringRef CFStringCreateWithBytes(CFAllocatorRef allocator, const UInt8* bytes, CFIndex length,
                                    CFStringEncoding encoding, Boolean isExternalRepresentation);
CFDataRef CFDataCreate(CFAllocatorRef allocator, const UInt8* bytes, CFIndex length);
CFIndex CFDataGetLength(CFDataRef data);
const UInt8* CFDataGetBytePtr(CFDataRef data);

using PasteboardRef = struct OpaquePasteboardRef*;
using PasteboardItemID = void*;
using PasteboardFlavorFlags = std::uint32_t;
using PasteboardSyncFlags = std::uint32_t;

constexpr OSStatus noErr = 0;
#define kPasteboardClipboard ((CFStringRef) @"com.apple.pasteboard.clipboard")
constexpr PasteboardFlavorFlags kPasteboardFlavorNoFlags = 0;

OSStatus PasteboardCreate(CFStringRef name, PasteboardRef* created);
PasteboardSyncFlags PasteboardSynchronize(PasteboardRef pasteboard);
OSStatus PasteboardClear(PasteboardRef pasteboard);
OSStatus PasteboardGetItemCount(PasteboardRef pasteboard, ItemCount* count);
OSStatus PasteboardGetItemIdentifier(PasteboardRef pasteboard, CFIndex index, PasteboardItemID* item);
OSStatus PasteboardCopyItemFlavorData(PasteboardRef pasteboard, PasteboardItemID item, CFStringRef type,
                                      CFDataRef* data);
OSStatus PasteboardPutItemFlavor(PasteboardRef pasteboard, PasteboardItemID item, CFStringRef type, CFDataRef data,
                                 PasteboardFlavorFlags flags);
