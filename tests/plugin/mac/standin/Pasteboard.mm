// Both views of FakePasteboard::Current(): AppKit's and Carbon's, whose Core Foundation objects are Foundation's here.
#import <AppKit/AppKit.h>
#import <ApplicationServices/ApplicationServices.h>

#include "plugin/mac/standin/StandIn.h"
#include "support/FakePasteboard.h"

NSPasteboardType const NSPasteboardTypeString = @"public.utf8-plain-text";

namespace {

constexpr OSStatus kFailed = -25130;
constexpr std::uintptr_t kItemIdentifiers =
    0x5000;  // minus the index, so that an identifier is never taken for an index

std::string Bytes(NSData* data) {
  if (data == nil) StandIn::Misuse("nil for data or a string");
  return std::string(static_cast<const char*>([data bytes]), [data length]);
}

std::string Utf8(NSString* text) { return Bytes([text dataUsingEncoding:NSUTF8StringEncoding]); }
std::string Utf8(CFStringRef text) { return Utf8((NSString*)text); }

std::vector<std::string> Utf8(NSArray* texts) {
  std::vector<std::string> converted;
  for (NSString* text in texts) converted.push_back(Utf8(text));
  return converted;
}

// Through a letter in front, because GNUstep drops a byte-order mark at the beginning.
NSString* Text(const std::string& utf8) {
  const std::string marked = 'x' + utf8;
  NSString* text = [[NSString alloc] initWithBytes:marked.data() length:marked.size() encoding:NSUTF8StringEncoding];
  return [[text autorelease] substringFromIndex:1];
}

FakePasteboard& Store() { return *FakePasteboard::Current(); }
FakePasteboardAccess Items() { return FakePasteboardAccess(Store()); }
FakePasteboardAccess General() {
  if (StandIn::pasteboardServerIsGone) [NSException raise:@"NSPasteboardCommunicationException" format:@"gone"];
  return FakePasteboardAccess(Store());
}

}  // namespace

@implementation NSPasteboard

+ (NSPasteboard*)generalPasteboard {
  static NSPasteboard* general = [[NSPasteboard alloc] init];
  return general;
}

- (NSInteger)changeCount {
  return static_cast<NSInteger>(General().ChangeCount().value_or(FakePasteboard::NextChange()));
}

- (NSInteger)declareTypes:(NSArray*)types owner:(id)owner {
  if (owner != nil) StandIn::Misuse("an owner, which the stand-in does not ask for data");
  General().DeclareTypes(false, Utf8(types));
  return [self changeCount];
}

- (BOOL)setData:(NSData*)data forType:(NSPasteboardType)type {
  return General().SetData(Utf8(type), Bytes(data));
}

- (BOOL)setString:(NSString*)string forType:(NSPasteboardType)type {
  return [type isEqualToString:NSPasteboardTypeString] && General().SetString(Utf8(string));
}

- (NSArray*)types {
  NSMutableArray* types = [NSMutableArray array];
  for (const auto& type : General().Types()) [types addObject:Text(type)];
  return types;
}

- (NSPasteboardType)availableTypeFromArray:(NSArray*)types {
  const std::string type = General().AvailableType(Utf8(types));
  return type.empty() ? nil : Text(type);
}

- (NSData*)dataForType:(NSPasteboardType)type {
  std::string bytes;
  return General().DataForType(Utf8(type), bytes) ? [NSData dataWithBytes:bytes.data() length:bytes.size()] : nil;
}

- (NSString*)stringForType:(NSPasteboardType)type {
  NSData* data = [self dataForType:type];
  return data == nil ? nil : Text(Bytes(data));
}

@end

void CFRelease(CFTypeRef object) { [(id)object release]; }

CFStringRef CFStringCreateWithBytes(CFAllocatorRef, const UInt8* bytes, CFIndex length, CFStringEncoding, Boolean) {
  NSString* text = Text({reinterpret_cast<const char*>(bytes), static_cast<std::size_t>(length)});
  return Store().refused.contains("CFString") ? nullptr : (CFStringRef)[text retain];
}

CFDataRef CFDataCreate(CFAllocatorRef, const UInt8* bytes, CFIndex length) {
  if (Store().refused.contains("CFData")) return nullptr;
  return (CFDataRef)[[NSData alloc] initWithBytes:bytes length:static_cast<NSUInteger>(length)];
}

CFIndex CFDataGetLength(CFDataRef data) { return static_cast<CFIndex>([(NSData*)data length]); }
const UInt8* CFDataGetBytePtr(CFDataRef data) { return static_cast<const UInt8*>([(NSData*)data bytes]); }

OSStatus PasteboardCreate(CFStringRef name, PasteboardRef* created) {
  if (Utf8(name) != "com.apple.pasteboard.clipboard" || !Items().OpenItems()) return kFailed;
  *created = (PasteboardRef)[[NSObject alloc] init];
  return noErr;
}

PasteboardSyncFlags PasteboardSynchronize(PasteboardRef) { return Items().SynchronizeItems(), 0; }

OSStatus PasteboardClear(PasteboardRef) { return Items().ClearItems() ? noErr : kFailed; }

OSStatus PasteboardGetItemCount(PasteboardRef, ItemCount* count) {
  *count = Items().ItemCount();
  return noErr;
}

OSStatus PasteboardGetItemIdentifier(PasteboardRef, CFIndex index, PasteboardItemID* item) {
  if (!Store().Accept("GetItemIdentifier")) return kFailed;
  *item = reinterpret_cast<PasteboardItemID>(kItemIdentifiers - static_cast<std::uintptr_t>(index));
  return noErr;
}

OSStatus PasteboardCopyItemFlavorData(PasteboardRef, PasteboardItemID item, CFStringRef type, CFDataRef* data) {
  std::string bytes;
  *data = (CFDataRef) @"of a failed call";
  if (!Items().CopyFlavor(kItemIdentifiers - reinterpret_cast<std::uintptr_t>(item), Utf8(type), bytes)) return kFailed;
  *data = CFDataCreate(nullptr, reinterpret_cast<const UInt8*>(bytes.data()), static_cast<CFIndex>(bytes.size()));
  return noErr;
}

OSStatus PasteboardPutItemFlavor(PasteboardRef, PasteboardItemID item, CFStringRef type, CFDataRef data,
                                 PasteboardFlavorFlags) {
  return item != nullptr && Items().PutFlavor(Utf8(type), Bytes((NSData*)data)) ? noErr : kFailed;
}
