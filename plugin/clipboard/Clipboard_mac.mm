// The system pasteboard of macOS: Carbon's view of it, which FileMaker itself uses, and AppKit's. Manual retain and
// release.
#include "clipboard/Pasteboard.h"

#include <functional>
#include <string>
#include <type_traits>

#include "clipboard/SystemPasteboard_mac.h"

namespace {

struct Release {
  void operator()(CFTypeRef object) const { CFRelease(object); }
};

/// Owns a Core Foundation object, or nothing.
template <typename Ref>
using Owned = std::unique_ptr<std::remove_pointer_t<Ref>, Release>;

/// Nothing when `type` is not UTF-8.
Owned<CFStringRef> FlavorName(const std::string& type) {
  return Owned<CFStringRef>(CFStringCreateWithBytes(kCFAllocatorDefault, reinterpret_cast<const UInt8*>(type.data()),
                                                    static_cast<CFIndex>(type.size()), kCFStringEncodingUTF8, false));
}

bool PutFlavor(OpaquePasteboardRef* pasteboard, void* item, const std::string& type, const std::string& bytes) {
  const auto name = FlavorName(type);
  if (!name) return false;
  const Owned<CFDataRef> data(CFDataCreate(kCFAllocatorDefault, reinterpret_cast<const UInt8*>(bytes.data()),
                                           static_cast<CFIndex>(bytes.size())));
  if (!data) return false;
  return PasteboardPutItemFlavor(pasteboard, item, name.get(), data.get(), kPasteboardFlavorNoFlags) == noErr;
}

/// Nil when `utf8` is not UTF-8.
NSString* Text(const std::string& utf8) {
  // Decoding drops a byte-order mark, but only at the very beginning.
  if (utf8.starts_with("\xEF\xBB\xBF")) return [Text('x' + utf8) substringFromIndex:1];
  return [[[NSString alloc] initWithBytes:utf8.data() length:utf8.size() encoding:NSUTF8StringEncoding] autorelease];
}

/// Without those that are not UTF-8, because an array cannot hold nil.
NSMutableArray* Texts(const std::vector<std::string>& texts) {
  NSMutableArray* converted = [NSMutableArray arrayWithCapacity:texts.size()];
  for (const auto& utf8 : texts) {
    NSString* text = Text(utf8);
    if (text != nil) [converted addObject:text];
  }
  return converted;
}

/// "" for nil.
std::string Utf8(NSString* text) {
  NSData* data = [text dataUsingEncoding:NSUTF8StringEncoding];  // UTF8String would end at a zero character
  return std::string(static_cast<const char*>([data bytes]), [data length]);
}

/// The result of `ask` for the general pasteboard. AppKit raises when it cannot reach the pasteboard server, which
/// counts as a refusal: no, nil or zero.
template <typename Question>
std::invoke_result_t<Question, NSPasteboard*> Ask(Question ask) {
  @try {
    return ask(SystemPasteboard());
  } @catch (NSException*) {
    return {};
  }
}

class MacPasteboard : public Pasteboard {
 public:
  MacPasteboard() : pool_([[NSAutoreleasePool alloc] init]) {}
  ~MacPasteboard() override {
    items_.reset();
    [pool_ drain];
  }

  // The number does not change when an owner adds types to those that it has declared, so the types count too.
  std::optional<std::uint64_t> ChangeCount() override {
    std::string state = std::to_string(Ask([](NSPasteboard* general) { return [general changeCount]; }));
    for (const auto& type : Types()) state += '\n' + type;
    return std::hash<std::string>{}(state);
  }

  bool OpenItems() override {
    PasteboardRef created = nullptr;
    if (PasteboardCreate(SystemPasteboardName(), &created) != noErr) return false;
    items_.reset(created);
    return items_ != nullptr;
  }

  bool ClearItems() override { return PasteboardClear(items_.get()) == noErr; }

  bool PutFlavor(const std::string& type, const std::string& bytes) override {
    return ::PutFlavor(items_.get(), reinterpret_cast<PasteboardItemID>(1), type, bytes);
  }

  void SynchronizeItems() override { PasteboardSynchronize(items_.get()); }

  std::size_t ItemCount() override {
    ::ItemCount count = 0;
    return PasteboardGetItemCount(items_.get(), &count) == noErr ? count : 0;
  }

  bool CopyFlavor(std::size_t item, const std::string& type, std::string& bytes) override {
    PasteboardItemID identifier = nullptr;
    const auto index = static_cast<CFIndex>(item);
    if (PasteboardGetItemIdentifier(items_.get(), index, &identifier) != noErr) return false;
    const auto name = FlavorName(type);
    if (!name) return false;
    CFDataRef copied = nullptr;
    if (PasteboardCopyItemFlavorData(items_.get(), identifier, name.get(), &copied) != noErr) return false;
    const Owned<CFDataRef> data(copied);
    if (!data) return false;
    const auto length = static_cast<std::size_t>(CFDataGetLength(data.get()));
    bytes.assign(reinterpret_cast<const char*>(CFDataGetBytePtr(data.get())), length);
    return true;
  }

  void DeclareTypes(bool text, const std::vector<std::string>& types) override {
    NSMutableArray* names = Texts(types);
    if (text) [names insertObject:NSPasteboardTypeString atIndex:0];
    Ask([&](NSPasteboard* general) { return [general declareTypes:names owner:nil]; });
  }

  bool SetData(const std::string& type, const std::string& bytes) override {
    NSString* name = Text(type);
    if (name == nil) return false;
    // AppKit may keep the data, so it gets a copy. It is released at once: in the pool, copies of a large snippet would
    // pile up.
    NSData* data = [[NSData alloc] initWithBytes:bytes.data() length:bytes.size()];
    const bool set = Ask([&](NSPasteboard* general) { return [general setData:data forType:name]; });
    [data release];
    return set;
  }

  bool SetString(const std::string& text) override {
    NSString* string = Text(text);
    if (string == nil) return false;
    return Ask([&](NSPasteboard* general) { return [general setString:string forType:NSPasteboardTypeString]; });
  }

  std::string AvailableType(const std::vector<std::string>& candidates) override {
    NSArray* names = Texts(candidates);
    return Utf8(Ask([&](NSPasteboard* general) { return [general availableTypeFromArray:names]; }));
  }

  bool DataForType(const std::string& type, std::string& bytes) override {
    NSString* name = Text(type);
    if (name == nil) return false;
    NSData* data = Ask([&](NSPasteboard* general) { return [general dataForType:name]; });
    if (data == nil) return false;
    bytes.assign(static_cast<const char*>([data bytes]), [data length]);
    return true;
  }

  std::string String() override {
    return Utf8(Ask([](NSPasteboard* general) { return [general stringForType:NSPasteboardTypeString]; }));
  }

  std::vector<std::string> Types() override {
    std::vector<std::string> names;
    for (NSString* type in Ask([](NSPasteboard* general) { return [general types]; })) names.push_back(Utf8(type));
    return names;
  }

 private:
  NSAutoreleasePool* pool_;
  Owned<PasteboardRef> items_;
};

}  // namespace

std::unique_ptr<Pasteboard> Pasteboard::Open() { return std::make_unique<MacPasteboard>(); }
