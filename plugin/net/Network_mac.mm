// The URL layer of macOS: Foundation's shared URL session. Manual retain and release.
#include "net/Transfer.h"

#import <Foundation/Foundation.h>

#include <memory>
#include <new>
#include <string_view>
#include <utility>

namespace {

constexpr char kNoTransfer[] = "The transfer could not be started.";
constexpr char kNoDescription[] = "The transfer failed.";
constexpr char kOutOfMemory[] = "out of memory";  // short enough for a string to hold without memory of its own

/// Nil when `utf8` is not UTF-8.
NSString* Text(const std::string& utf8) {
  return [[[NSString alloc] initWithBytes:utf8.data() length:utf8.size() encoding:NSUTF8StringEncoding] autorelease];
}

/// Nil when there is no URL in `text`.
NSURL* ToURL(const std::string& text) {
  NSString* string = Text(text);
  return string == nil ? nil : [NSURL URLWithString:string];
}

/// Keeps the bytes of `body` where they are, for as long as the session wants to send them again.
NSData* DataAround(std::string body) {
  const auto kept = std::make_shared<std::string>(std::move(body));
  return [[[NSData alloc] initWithBytesNoCopy:kept->data()
                                       length:kept->size()
                                  deallocator:^(void*, NSUInteger) {
                                    static_cast<void>(kept);  // goes with this block
                                  }] autorelease];
}

NSURLRequest* ToURLRequest(Network::Request request) {
  const std::chrono::duration<NSTimeInterval> limit = Network::TransferTimeLimit();
  NSMutableURLRequest* converted = [NSMutableURLRequest requestWithURL:ToURL(request.url)
                                                           cachePolicy:NSURLRequestReloadIgnoringLocalCacheData
                                                       timeoutInterval:limit.count()];
  const bool sendsBody = std::string_view(request.method) == "POST";
  [converted setHTTPMethod:Text(request.method)];
  for (const auto& [name, value] : request.headers) [converted setValue:Text(value) forHTTPHeaderField:Text(name)];
  if (sendsBody) [converted setHTTPBody:DataAround(std::move(request.body))];
  return converted;
}

Network::Outcome ToOutcome(NSData* data, NSURLResponse* response, NSError* error) {
  Network::Outcome outcome;
  if (error != nil) {
    const char* description = [[error localizedDescription] UTF8String];
    outcome.failure = description == nullptr || *description == '\0' ? kNoDescription : description;
    return outcome;
  }
  if ([response isKindOfClass:[NSHTTPURLResponse class]]) {
    outcome.status = [static_cast<NSHTTPURLResponse*>(response) statusCode];
  }
  outcome.hasBody = data != nil;
  try {
    if ([data length] != 0) outcome.body.assign(static_cast<const char*>([data bytes]), [data length]);
  } catch (const std::bad_alloc&) {  // which must not leave the session's block
    outcome = {.body = {}, .failure = kOutOfMemory};
  }
  return outcome;
}

/// Calls the completion once: with the outcome, or, when the last owner lets go without one, with a failure.
class Delivery {
 public:
  explicit Delivery(std::function<void(Network::Outcome)> completion) : completion_(std::move(completion)) {}
  ~Delivery() {
    if (completion_) completion_({.body = {}, .failure = kNoTransfer});
  }
  Delivery(const Delivery&) = delete;
  Delivery& operator=(const Delivery&) = delete;

  void Deliver(Network::Outcome outcome) { std::exchange(completion_, nullptr)(std::move(outcome)); }

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
    const auto delivery = std::make_shared<Delivery>(std::move(completion));
    @try {
      NSURLSessionDataTask* task =
          [[NSURLSession sharedSession] dataTaskWithRequest:ToURLRequest(std::move(request))
                                          completionHandler:^(NSData* data, NSURLResponse* response, NSError* error) {
                                            delivery->Deliver(ToOutcome(data, response, error));
                                          }];
      [task resume];
    } @catch (...) {  // the delivery, left alone, tells of it
    }
  }
}
