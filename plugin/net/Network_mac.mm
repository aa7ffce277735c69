// The URL layer of macOS: Foundation's shared URL session. Manual retain and release.
#include "net/Transfer.h"

#import <Foundation/Foundation.h>

#include <memory>
#include <string_view>
#include <utility>

/// The method that NSURL has since macOS 14, for older SDKs.
@protocol StrictURLs
+ (NSURL*)URLWithString:(NSString*)text encodingInvalidCharacters:(BOOL)encodes;
@end

namespace {

constexpr char kNoTransfer[] = "The transfer could not be started.";
constexpr char kNoDescription[] = "The transfer failed.";

/// Nil when `utf8` is not UTF-8.
NSString* Text(const std::string& utf8) {
  return [[[NSString alloc] initWithBytes:utf8.data() length:utf8.size() encoding:NSUTF8StringEncoding] autorelease];
}

/// Nil when Foundation refuses `text`. In hosts built with the SDK of macOS 14 or newer, the older method
/// percent-encodes invalid characters instead of refusing them, so the request would go to another URL.
NSURL* ToURL(const std::string& text) {
  NSString* string = Text(text);
  if (string == nil) return nil;
  Class<StrictURLs> strict = [NSURL class];
  if ([NSURL respondsToSelector:@selector(URLWithString:encodingInvalidCharacters:)]) {
    return [strict URLWithString:string encodingInvalidCharacters:NO];
  }
  return [NSURL URLWithString:string];
}

/// Keeps the bytes of `body` in place for as long as the session may need to send them again.
NSData* DataAround(std::string body) {
  const auto kept = std::make_shared<std::string>(std::move(body));
  return [[[NSData alloc] initWithBytesNoCopy:kept->data()
                                       length:kept->size()
                                  deallocator:^(void*, NSUInteger) {
                                    static_cast<void>(kept);  // released with this block
                                  }] autorelease];
}

NSURLRequest* ToURLRequest(NSURL* url, Network::Request request) {
  const std::chrono::duration<NSTimeInterval> limit = Network::TransferTimeLimit();
  NSMutableURLRequest* converted = [NSMutableURLRequest requestWithURL:url
                                                           cachePolicy:NSURLRequestReloadIgnoringLocalCacheData
                                                       timeoutInterval:limit.count()];
  const bool sendsBody = std::string_view(request.method) == "POST";
  [converted setHTTPMethod:Text(request.method)];
  for (const auto& [name, value] : request.headers) [converted setValue:Text(value) forHTTPHeaderField:Text(name)];
  if (sendsBody) [converted setHTTPBody:DataAround(std::move(request.body))];
  return converted;
}

Network::Outcome ToOutcome(NSData* data, NSURLResponse* response, NSError* error) {
  if (error != nil) {
    const char* description = [[error localizedDescription] UTF8String];
    return Network::Failure(description == nullptr || *description == '\0' ? kNoDescription : description);
  }
  const bool isHttp = [response isKindOfClass:[NSHTTPURLResponse class]];
  const long long status = isHttp ? [static_cast<NSHTTPURLResponse*>(response) statusCode] : 0;
  const void* bytes = [data length] != 0 ? [data bytes] : "";  // an empty one has no address
  return Network::Answer(status, data == nil ? nullptr : static_cast<const char*>(bytes), [data length]);
}

/// Calls the completion once: with the outcome, or with a failure if the last owner releases it without one.
class CompletionCall {
 public:
  explicit CompletionCall(std::function<void(Network::Outcome)> completion) : completion_(std::move(completion)) {}
  ~CompletionCall() {
    if (completion_) completion_(Network::Failure(kNoTransfer));
  }
  CompletionCall(const CompletionCall&) = delete;
  CompletionCall& operator=(const CompletionCall&) = delete;

  void Make(Network::Outcome outcome) { std::exchange(completion_, nullptr)(std::move(outcome)); }

 private:
  std::function<void(Network::Outcome)> completion_;
};

}  // namespace

bool Network::IsURL(const std::string& text) {
  @autoreleasepool {
    return ToURL(text) != nil;
  }
}

void Network::StartTransfer(Request request, std::function<void(Outcome)> completion) {
  @autoreleasepool {
    const auto call = std::make_shared<CompletionCall>(std::move(completion));
    @try {
      NSURL* url = ToURL(request.url);
      if (url == nil) return;
      NSURLSessionDataTask* task =
          [[NSURLSession sharedSession] dataTaskWithRequest:ToURLRequest(url, std::move(request))
                                          completionHandler:^(NSData* data, NSURLResponse* response, NSError* error) {
                                            call->Make(ToOutcome(data, response, error));
                                          }];
      [task resume];
    } @catch (...) {  // the call is released and reports the failure
    }
  }
}
