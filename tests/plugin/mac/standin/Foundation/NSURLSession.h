// The shared URL session, over the FakeUrlLayer of the running test. Declared as in Apple's headers, but under names
// that cannot meet classes of the same name inside GNUstep.
#pragma once

#import <Foundation/NSObject.h>

@class NSData, NSError, NSURLRequest, NSURLResponse;

#define NSURLSession StandInURLSession
#define NSURLSessionDataTask StandInURLSessionDataTask

typedef void (^StandInTransferHandler)(NSData* data, NSURLResponse* response, NSError* error);

@interface NSURLSessionDataTask : NSObject {
 @public
  NSURLRequest* request_;
  StandInTransferHandler handler_;
}
- (void)resume;
@end

@interface NSURLSession : NSObject
+ (NSURLSession*)sharedSession;
- (NSURLSessionDataTask*)dataTaskWithRequest:(NSURLRequest*)request
                           completionHandler:(StandInTransferHandler)completionHandler;
@end
