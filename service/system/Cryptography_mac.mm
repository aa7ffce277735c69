#include <CommonCrypto/CommonDigest.h>
#import <Foundation/Foundation.h>
#include <stdlib.h>
#include <string.h>

#include <algorithm>

#include "system/Cryptography.h"

namespace service {

std::string RandomKey() {
  ContentHash bytes{};
  arc4random_buf(bytes.data(), bytes.size());
  @autoreleasepool {
    NSData* data = [NSData dataWithBytes:bytes.data() length:bytes.size()];
    std::string text = [data base64EncodedStringWithOptions:0].UTF8String;
    std::replace(text.begin(), text.end(), '+', '-');
    std::replace(text.begin(), text.end(), '/', '_');
    text.resize(text.find('='));
    return text;
  }
}

bool IsSameSecret(std::string_view a, std::string_view b) {
  return a.size() == b.size() && timingsafe_bcmp(a.data(), b.data(), a.size()) == 0;
}

ContentHash HashOf(std::string_view bytes) {
  // In pieces, because one call counts in 32 bits.
  constexpr std::size_t kPiece = std::size_t{1} << 30;
  CC_SHA256_CTX context;
  CC_SHA256_Init(&context);
  for (; !bytes.empty(); bytes.remove_prefix(std::min(bytes.size(), kPiece))) {
    CC_SHA256_Update(&context, bytes.data(), static_cast<CC_LONG>(std::min(bytes.size(), kPiece)));
  }
  ContentHash hash{};
  CC_SHA256_Final(hash.data(), &context);
  return hash;
}

std::optional<std::string> DecodeBase64(std::string_view text) {
  @autoreleasepool {
    NSData* encoded = [NSData dataWithBytesNoCopy:const_cast<char*>(text.data()) length:text.size() freeWhenDone:NO];
    NSData* bytes = [[[NSData alloc] initWithBase64EncodedData:encoded options:0] autorelease];
    if (bytes == nil) return std::nullopt;
    return std::string(static_cast<const char*>(bytes.bytes), bytes.length);
  }
}

}  // namespace service
