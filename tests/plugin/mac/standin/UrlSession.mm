// NSURLSession over FakeUrlLayer::Current(), and what differs between Foundation's classes and GNUstep's.
#import <Foundation/Foundation.h>

#include <memory>

#include "plugin/mac/standin/StandIn.h"
#include "support/FakeUrlLayer.h"

using StandIn::Misuse;
using StandIn::Mood;
using Handler = StandInTransferHandler;

static bool encodesInvalidCharacters = false;

// GNUstep accepts nil as the text of a URL; the original raises.
#pragma clang diagnostic ignored "-Wobjc-protocol-method-implementation"
@implementation NSURL (StandIn)
+ (instancetype)URLWithString:(NSString*)text {
  if (text == nil) Misuse("nil for the text of a URL");
  if (encodesInvalidCharacters) text = [text stringByAddingPercentEscapesUsingEncoding:NSUTF8StringEncoding];
  return [[[self alloc] initWithString:text] autorelease];
}
@end

void StandIn::UpgradeToMacOS14() {
  encodesInvalidCharacters = true;
  const auto make = [](Class type, SEL, NSString* text, BOOL encodes) -> NSURL* {
    return encodes ? [type URLWithString:text] : [[[type alloc] initWithString:text] autorelease];
  };
  NSURL* (*const method)(Class, SEL, NSString*, BOOL) = make;
  class_addMethod(object_getClass([NSURL class]), NSSelectorFromString(@"URLWithString:encodingInvalidCharacters:"),
                  reinterpret_cast<IMP>(method), "@@:@c");
}

// Data around the caller's bytes, which is empty with GNUstep 1.28. It would also use the block as an object, which a
// block is not with GCC's Objective-C runtime.
@interface StandInData : NSData {
 @public
  void* bytes_;
  NSUInteger length_;
  GSDataDeallocatorBlock deallocator_;
}
@end

@implementation StandInData

+ (void)load {
  const SEL initializer = @selector(initWithBytesNoCopy:length:deallocator:);
  NSData* data = [NSData alloc];
  method_setImplementation(class_getInstanceMethod(object_getClass(data), initializer),
                           class_getMethodImplementation(self, initializer));
  [data release];
}

// Called on the object that NSData has allocated.
- (instancetype)initWithBytesNoCopy:(void*)bytes
                             length:(NSUInteger)length
                        deallocator:(GSDataDeallocatorBlock)deallocator {
  [self release];
  StandInData* data = [StandInData alloc];
  data->bytes_ = bytes;
  data->length_ = length;
  data->deallocator_ = Block_copy(deallocator);
  return data;
}

- (NSUInteger)length {
  return length_;
}

- (const void*)bytes {
  return bytes_;
}

- (id)copyWithZone:(NSZone*)zone {
  static_cast<void>(zone);
  return [self retain];
}

- (void)dealloc {
  deallocator_(bytes_, length_);
  Block_release(deallocator_);
  [super dealloc];
}

@end

namespace {

NSURLResponse* ResponseOf(long long status) {
  NSURL* url = [NSURL URLWithString:@"http://a.example"];
  if (StandIn::mood == Mood::kIsNotHttp) {
    return [[[NSURLResponse alloc] initWithURL:url MIMEType:nil expectedContentLength:0
                              textEncodingName:nil] autorelease];
  }
  if (status == 0) return nil;
  return [[[NSHTTPURLResponse alloc] initWithURL:url statusCode:status HTTPVersion:nil headerFields:nil] autorelease];
}

void Answer(const Network::Outcome& outcome, Handler handler) {
  @autoreleasepool {
    NSData* data = outcome.hasBody ? [NSData dataWithBytes:outcome.body.data() length:outcome.body.size()] : nil;
    if (outcome.failure.empty()) return handler(data, ResponseOf(outcome.status), nil);
    NSDictionary* info = @{NSLocalizedDescriptionKey : [NSString stringWithUTF8String:outcome.failure.c_str()]};
    handler(nil, nil, [NSError errorWithDomain:NSURLErrorDomain code:NSURLErrorTimedOut userInfo:info]);
  }
}

std::string ToText(NSURLRequest* request) {
  NSData* body = [request HTTPBody];
  if (body != nil && [[request HTTPMethod] isEqualToString:@"GET"]) Misuse("a body that the method does not have");
  NSString* text = [NSString stringWithFormat:@"%@ %@\n", [request HTTPMethod], [[request URL] absoluteString]];
  NSDictionary* headers = [request allHTTPHeaderFields];
  for (NSString* name in [[headers allKeys] sortedArrayUsingSelector:@selector(compare:)]) {
    text = [text stringByAppendingFormat:@"%@: %@\n", name, [headers objectForKey:name]];
  }
  return [text UTF8String] + ('\n' + std::string(static_cast<const char*>([body bytes]), [body length]));
}

}  // namespace

@implementation NSURLSessionDataTask

- (void)dealloc {
  [request_ release];
  Block_release(handler_);
  [super dealloc];
}

- (void)resume {
  const std::shared_ptr<NSURLSessionDataTask> running([self retain],
                                                      [](NSURLSessionDataTask* task) { [task release]; });
  FakeUrlLayer::Current()->Take(
      ToText(request_), [[request_ HTTPBody] bytes],
      [running](const Network::Outcome& outcome) { Answer(outcome, running.get()->handler_); });
}

@end

@implementation NSURLSession

+ (NSURLSession*)sharedSession {
  static NSURLSession* shared = [[NSURLSession alloc] init];
  return shared;
}

- (NSURLSessionDataTask*)dataTaskWithRequest:(NSURLRequest*)request completionHandler:(Handler)completionHandler {
  StandIn::timeoutInterval = [request timeoutInterval];
  StandIn::cachePolicy = [request cachePolicy];
  if (StandIn::mood == Mood::kRaises) [NSException raise:NSGenericException format:@"no more tasks"];
  if (StandIn::mood == Mood::kMakesNoTask) return nil;
  NSURLSessionDataTask* task = [[[NSURLSessionDataTask alloc] init] autorelease];
  task->request_ = [request copy];
  task->handler_ = Block_copy(completionHandler);
  return task;
}

@end
