// The shared URL session, over the FakeUrlLayer of the running test. Declared as in Apple's headers, but under names
// that cannot meet classes of the same name inside GNUstep.
#pragma once

#import <Foundation/NSObject.h>

@class NSData, NSError, NSURLRequest, NSURLResponse;

#define NSURLSession StandInURLSession
#define NSURLSessionDataTask StandInURLSessionDataTask

#pragma clang assume_nonnull begin

typedef void (^StandInTransferHandler)(NSData* _Nullable data, NSURLResponse* _Nullable response,
                                       NSError* _Nullable error);

@interface NSURLSessionDataTask : NSObject {
 @public
  NSURLRequest* request_;
  StandInTransferHandler handler_;
}
- (void)resume;
@end

@interface NSURLSession : NSObject
+ (NSURLSession*)sharedSession;
- (NSURLSessionDataTask* _Nullable)dataTaskWithRequest:(NSURLRequest*)request
                                     completionHandler:(StandInTransferHandler)completionHandler;
@end

#pragma clang assume_nonnull end
