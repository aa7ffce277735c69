// The Pasteboard Manager over FakePasteboard::Current(). Writing is seen by everyone at once; reading shows what was
// there at the reference's last PasteboardSynchronize.
#import <ApplicationServices/ApplicationServices.h>

#include <map>
#include <memory>

#include "core/Utf8.h"
#include "tests/mac/standin/PasteboardControl.h"
#include "tests/mac/standin/StandIn.h"
#include "tests/support/FakePasteboard.h"

struct __CFString {
  std::string utf8;
};

struct __CFData {
  std::string bytes;
};

struct OpaquePasteboardRef {
  bool synchronized = false;
  int ownedWrite = 0;  // the write by which this reference became the owner
  std::vector<FakePasteboard::Item> items;
  std::vector<PasteboardItemID> identifiers;
};

namespace {

using StandIn::Misuse;

constexpr std::uintptr_t kFirstForeignIdentifier = 0x5000;  // no index looks like it

constexpr OSStatus kFailed = -25130;

// What a failed call leaves behind.
const CFDataRef kNotForUse = reinterpret_cast<CFDataRef>(&kFirstForeignIdentifier);

FakePasteboard& Store() { return *FakePasteboard::Current(); }

std::map<CFTypeRef, std::shared_ptr<void>>& Live() {
  static std::map<CFTypeRef, std::shared_ptr<void>> live;
  return live;
}

template <typename Object>
Object* Create(Object content) {
  const auto object = std::make_shared<Object>(std::move(content));
  Live().emplace(object.get(), object);
  return object.get();
}

template <typename Ref>
Ref Alive(Ref object, const char* where) {
  if (!Live().contains(object)) Misuse(std::string(where) + " of an object that is not alive");
  return object;
}

bool IsOwner(PasteboardRef pasteboard) {
  return pasteboard->ownedWrite != 0 && pasteboard->ownedWrite == Store().writes;
}

FakePasteboard::Item* FindItem(PasteboardRef pasteboard, PasteboardItemID item) {
  for (std::size_t i = 0; i < pasteboard->items.size(); ++i) {
    if (pasteboard->identifiers[i] == item) return &pasteboard->items[i];
  }
  return nullptr;
}

}  // namespace

std::size_t PasteboardControl::CoreObjects() { return Live().size(); }

CFStringRef StandInConstantString(const char* text) {
  static std::map<std::string, __CFString> constants;
  return &constants.try_emplace(text, __CFString{text}).first->second;
}

void CFRelease(CFTypeRef object) { Live().erase(Alive(object, "CFRelease")); }

CFStringRef CFStringCreateWithBytes(CFAllocatorRef, const UInt8* bytes, CFIndex length, CFStringEncoding encoding,
                                    Boolean) {
  if (encoding != kCFStringEncodingUTF8) Misuse("an encoding that the stand-in does not have");
  std::string utf8(reinterpret_cast<const char*>(bytes), static_cast<std::size_t>(length));
  return Store().refused.contains("CFString") || !IsUtf8(utf8) ? nullptr : Create(__CFString{std::move(utf8)});
}

CFDataRef CFDataCreate(CFAllocatorRef, const UInt8* bytes, CFIndex length) {
  if (Store().refused.contains("CFData")) return nullptr;
  return Create(__CFData{std::string(reinterpret_cast<const char*>(bytes), static_cast<std::size_t>(length))});
}

CFIndex CFDataGetLength(CFDataRef data) { return static_cast<CFIndex>(Alive(data, "CFDataGetLength")->bytes.size()); }

const UInt8* CFDataGetBytePtr(CFDataRef data) {
  return reinterpret_cast<const UInt8*>(Alive(data, "CFDataGetBytePtr")->bytes.data());
}

OSStatus PasteboardCreate(CFStringRef name, PasteboardRef* created) {
  if (name != kPasteboardClipboard) Misuse("another pasteboard than the clipboard");
  if (!Store().hasItems || !Store().Accept("OpenItems")) return kFailed;
  *created = Create(OpaquePasteboardRef{});
  return noErr;
}

PasteboardSyncFlags PasteboardSynchronize(PasteboardRef pasteboard) {
  Alive(pasteboard, "PasteboardSynchronize");
  if (!Store().Accept("SynchronizeItems")) return 0;
  if (pasteboard->items != Store().items) {
    pasteboard->items = Store().items;
    pasteboard->identifiers.clear();
    for (std::uintptr_t i = 0; i < pasteboard->items.size(); ++i) {
      pasteboard->identifiers.push_back(reinterpret_cast<PasteboardItemID>(kFirstForeignIdentifier + i));
    }
  }
  pasteboard->synchronized = true;
  return 0;
}

OSStatus PasteboardClear(PasteboardRef pasteboard) {
  Alive(pasteboard, "PasteboardClear");
  if (!Store().Accept("ClearItems")) return kFailed;
  Store().items.clear();
  Store().declared.clear();
  pasteboard->ownedWrite = ++Store().writes;
  pasteboard->items.clear();
  pasteboard->identifiers.clear();
  pasteboard->synchronized = true;
  return noErr;
}

OSStatus PasteboardGetItemCount(PasteboardRef pasteboard, ItemCount* count) {
  if (!Store().Accept("ItemCount") || !Alive(pasteboard, "PasteboardGetItemCount")->synchronized) {
    return kFailed;
  }
  *count = pasteboard->items.size();
  return noErr;
}

OSStatus PasteboardGetItemIdentifier(PasteboardRef pasteboard, CFIndex index, PasteboardItemID* item) {
  const auto& identifiers = Alive(pasteboard, "PasteboardGetItemIdentifier")->identifiers;
  if (!Store().Accept("GetItemIdentifier") || !pasteboard->synchronized) return kFailed;
  if (index < 1 || index > static_cast<CFIndex>(identifiers.size())) return kFailed;
  *item = identifiers[static_cast<std::size_t>(index - 1)];
  return noErr;
}

OSStatus PasteboardCopyItemFlavorData(PasteboardRef pasteboard, PasteboardItemID item, CFStringRef type,
                                      CFDataRef* data) {
  const std::string& name = Alive(type, "PasteboardCopyItemFlavorData")->utf8;
  *data = kNotForUse;
  if (!Store().Accept("CopyFlavor " + name)) return kFailed;
  const auto* flavors = FindItem(Alive(pasteboard, "PasteboardCopyItemFlavorData"), item);
  if (flavors == nullptr) return kFailed;
  const std::string* bytes = PasteboardControl::Find({flavors, 1}, name);
  if (bytes == nullptr) return kFailed;
  *data = CFDataCreate(kCFAllocatorDefault, reinterpret_cast<const UInt8*>(bytes->data()),
                       static_cast<CFIndex>(bytes->size()));
  return noErr;
}

OSStatus PasteboardPutItemFlavor(PasteboardRef pasteboard, PasteboardItemID item, CFStringRef type, CFDataRef data,
                                 PasteboardFlavorFlags) {
  const std::string& name = Alive(type, "PasteboardPutItemFlavor")->utf8;
  if (!Store().Accept("PutFlavor " + name)) return kFailed;
  if (!IsOwner(Alive(pasteboard, "PasteboardPutItemFlavor"))) return kFailed;
  if (item == nullptr) return kFailed;
  auto* flavors = FindItem(pasteboard, item);
  if (flavors == nullptr) {
    pasteboard->identifiers.push_back(item);
    flavors = &pasteboard->items.emplace_back();
  }
  if (PasteboardControl::Find({flavors, 1}, name) != nullptr) return kFailed;
  flavors->emplace_back(name, Alive(data, "PasteboardPutItemFlavor")->bytes);
  Store().items = pasteboard->items;
  return noErr;
}
