// Data around the caller's bytes, which GNUstep 1.28 makes empty; it would also take the block for an object, which it
// is not beside GCC's Objective-C runtime.
#import <Foundation/Foundation.h>

#include "tests/mac/standin/StandIn.h"

@interface StandInDataWithDeallocator : NSData {
 @public
  void* bytes_;
  NSUInteger length_;
  GSDataDeallocatorBlock deallocator_;
}
@end

@implementation StandInDataWithDeallocator

+ (void)load {
  const SEL initializer = @selector(initWithBytesNoCopy:length:deallocator:);
  NSData* data = [NSData alloc];
  method_setImplementation(class_getInstanceMethod(object_getClass(data), initializer),
                           class_getMethodImplementation(self, initializer));
  [data release];
}

// Runs as a method of what NSData has allocated.
- (instancetype)initWithBytesNoCopy:(void*)bytes
                             length:(NSUInteger)length
                        deallocator:(GSDataDeallocatorBlock)deallocator {
  if (bytes == nullptr || deallocator == nil) StandIn::Misuse("nil for the bytes or the deallocator");
  [self release];
  StandInDataWithDeallocator* data = [StandInDataWithDeallocator alloc];
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
