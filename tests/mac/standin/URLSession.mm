// NSURLSession over FakeUrlLayer::Current().
#import <Foundation/Foundation.h>

#include <memory>

#include "tests/mac/standin/StandIn.h"
#include "tests/mac/standin/UrlSessionControl.h"
#include "tests/support/FakeUrlLayer.h"

using StandIn::Misuse;
using UrlSessionControl::Mood;
using Handler = StandInTransferHandler;

@interface WordlessError : NSError
@end

@implementation WordlessError
- (NSString*)localizedDescription {
  return nil;
}
@end

namespace {

NSError* ErrorSaying(const std::string& description) {
  NSDictionary* info = @{NSLocalizedDescriptionKey : [NSString stringWithUTF8String:description.c_str()]};
  Class kind = UrlSessionControl::mood == Mood::kDescribesNothing ? [WordlessError class] : [NSError class];
  return [kind errorWithDomain:NSURLErrorDomain code:NSURLErrorTimedOut userInfo:info];
}

NSURLResponse* ResponseOf(long long status) {
  NSURL* url = [NSURL URLWithString:@"http://a.example"];
  if (UrlSessionControl::mood == Mood::kIsNotHttp) {
    return [[[NSURLResponse alloc] initWithURL:url MIMEType:nil expectedContentLength:0
                              textEncodingName:nil] autorelease];
  }
  if (status == 0) return nil;
  return [[[NSHTTPURLResponse alloc] initWithURL:url statusCode:status HTTPVersion:nil headerFields:nil] autorelease];
}

void Answer(const Network::Outcome& outcome, Handler handler) {
  @autoreleasepool {
    NSData* data = outcome.hasBody ? [NSData dataWithBytes:outcome.body.data() length:outcome.body.size()] : nil;
    if (outcome.failure.empty()) {
      handler(data, ResponseOf(outcome.status), nil);
    } else {
      handler(nil, nil, ErrorSaying(outcome.failure));
    }
  }
}

FakeUrlLayer::Call ToCall(NSURLRequest* request) {
  NSData* body = [request HTTPBody];
  if (body != nil && [[request HTTPMethod] isEqualToString:@"GET"]) Misuse("a body that the method does not have");
  FakeUrlLayer::Call call = {.url = [[[request URL] absoluteString] UTF8String],
                             .method = [[request HTTPMethod] UTF8String],
                             .headers = {},
                             .body = std::string(static_cast<const char*>([body bytes]), [body length]),
                             .bodyAddress = [body bytes]};
  NSDictionary* headers = [request allHTTPHeaderFields];
  for (NSString* name in headers) call.headers[[name UTF8String]] = [[headers objectForKey:name] UTF8String];
  return call;
}

}  // namespace

@implementation NSURLSessionDataTask

- (instancetype)initWithRequest:(NSURLRequest*)request handler:(Handler)handler {
  self = [super init];
  request_ = [request copy];
  handler_ = Block_copy(handler);
  return self;
}

- (void)dealloc {
  [request_ release];
  Block_release(handler_);
  [super dealloc];
}

- (void)resume {
  if (resumed_) Misuse("a task resumed twice");
  resumed_ = YES;
  if (UrlSessionControl::mood == Mood::kForgets) return;
  const std::shared_ptr<NSURLSessionDataTask> running([self retain],
                                                      [](NSURLSessionDataTask* task) { [task release]; });
  FakeUrlLayer::Current()->Take(
      ToCall(request_), [running](const Network::Outcome& outcome) { Answer(outcome, running.get()->handler_); });
}

@end

@implementation NSURLSession

// GNUstep makes no URL of nil; the original raises.
+ (void)load {
  static IMP makeURL;
  Method method = class_getClassMethod([NSURL class], @selector(URLWithString:));
  makeURL = method_getImplementation(method);
  method_setImplementation(method, reinterpret_cast<IMP>(+[](id self, SEL selector, NSString* text) {
                             if (text == nil) Misuse("nil for the text of a URL");
                             return reinterpret_cast<id (*)(id, SEL, NSString*)>(makeURL)(self, selector, text);
                           }));
}

+ (NSURLSession*)sharedSession {
  static NSURLSession* shared = [[NSURLSession alloc] init];
  return shared;
}

- (NSURLSessionDataTask*)dataTaskWithRequest:(NSURLRequest*)request completionHandler:(Handler)completionHandler {
  if (request == nil || [request URL] == nil) Misuse("a task without a request or its URL");
  if (completionHandler == nil) Misuse("a task whose end nobody hears of");
  UrlSessionControl::timeoutInterval = [request timeoutInterval];
  UrlSessionControl::cachePolicy = [request cachePolicy];
  if (UrlSessionControl::mood == Mood::kRaises) [NSException raise:NSGenericException format:@"no more tasks"];
  if (UrlSessionControl::mood == Mood::kMakesNoTask) return nil;
  return [[[NSURLSessionDataTask alloc] initWithRequest:request handler:completionHandler] autorelease];
}

@end
