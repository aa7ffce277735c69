// NSPasteboard over FakePasteboard::Current().
#import <AppKit/AppKit.h>

#include <algorithm>

#include "tests/mac/standin/PasteboardControl.h"
#include "tests/mac/standin/StandIn.h"
#include "tests/support/FakePasteboard.h"

NSPasteboardType const NSPasteboardTypeString = @"public.utf8-plain-text";
NSString* const NSPasteboardCommunicationException = @"NSPasteboardCommunicationException";

namespace {

using StandIn::Misuse;

FakePasteboard& Store() { return *FakePasteboard::Current(); }

bool Accept(const std::string& call) {
  const bool accepted = Store().Accept(call);
  if (PasteboardControl::raising.contains(call)) [NSException raise:NSPasteboardCommunicationException format:@"gone"];
  return accepted;
}

std::string Utf8(NSString* text) {
  if (text == nil) Misuse("nil for a string");
  NSData* data = [text dataUsingEncoding:NSUTF8StringEncoding];
  return std::string(static_cast<const char*>([data bytes]), [data length]);
}

// Through a letter in front, because GNUstep drops a byte-order mark at the beginning.
NSString* String(const std::string& utf8) {
  const std::string marked = 'x' + utf8;
  NSString* text = [[NSString alloc] initWithBytes:marked.data() length:marked.size() encoding:NSUTF8StringEncoding];
  return [[text autorelease] substringFromIndex:1];
}

// Those declared, whether their data is there or not; otherwise those of all items.
std::vector<std::string> PresentTypes() {
  std::vector<std::string> types = Store().declared;
  for (const auto& item : Store().items) {
    for (const auto& [type, bytes] : item) {
      if (std::find(types.begin(), types.end(), type) == types.end()) types.push_back(type);
    }
  }
  return types;
}

BOOL Put(const std::string& type, const std::string& bytes) {
  const auto& declared = Store().declared;
  if (std::find(declared.begin(), declared.end(), type) == declared.end()) return NO;
  if (Store().items.empty()) Store().items.emplace_back();
  auto& item = Store().items.front();
  std::erase_if(item, [&](const auto& entry) { return entry.first == type; });
  item.emplace_back(type, bytes);
  return YES;
}

}  // namespace

@implementation NSPasteboard

+ (NSPasteboard*)generalPasteboard {
  static NSPasteboard* general = [[NSPasteboard alloc] init];
  return general;
}

- (NSInteger)declareTypes:(NSArray*)types owner:(id)owner {
  if (types == nil) Misuse("nil for the types");
  if (owner != nil) Misuse("an owner, which the stand-in does not ask for data");
  if (!Accept("DeclareTypes")) return Store().writes;
  Store().items.clear();
  Store().declared.clear();
  for (NSString* type in types) Store().declared.push_back(Utf8(type));
  return ++Store().writes;
}

- (BOOL)setData:(NSData*)data forType:(NSPasteboardType)type {
  const std::string name = Utf8(type);
  if (data == nil) Misuse("nil for data, a promise that nobody here would keep");
  const std::string bytes(static_cast<const char*>([data bytes]), [data length]);
  return Accept("SetData " + name) && Put(name, bytes);
}

- (BOOL)setString:(NSString*)string forType:(NSPasteboardType)type {
  const std::string name = Utf8(type);
  const std::string text = Utf8(string);
  return Accept("SetString") && Put(name, text);
}

- (NSArray*)types {
  if (!Accept("Types")) return nil;
  NSMutableArray* types = [NSMutableArray array];
  for (const auto& type : PresentTypes()) [types addObject:String(type)];
  return types;
}

- (NSPasteboardType)availableTypeFromArray:(NSArray*)types {
  if (types == nil) Misuse("nil for the types");
  if (!Accept("AvailableType")) return nil;
  const auto present = PresentTypes();
  for (NSString* type in types) {
    if (std::find(present.begin(), present.end(), Utf8(type)) != present.end()) return type;
  }
  return nil;
}

- (NSData*)dataForType:(NSPasteboardType)type {
  const std::string name = Utf8(type);
  const std::string* bytes = Accept("DataForType " + name) ? PasteboardControl::Find(Store().items, name) : nullptr;
  return bytes == nullptr ? nil : [NSData dataWithBytes:bytes->data() length:bytes->size()];
}

- (NSString*)stringForType:(NSPasteboardType)type {
  const std::string name = Utf8(type);
  const std::string* bytes = Accept("String") ? PasteboardControl::Find(Store().items, name) : nullptr;
  return bytes == nullptr ? nil : String(*bytes);
}

@end
