// As much of Foundation as the macOS units take. Declared as in Apple's headers, for compiling only.
#pragma once

#if __OBJC_BOOL_IS_BOOL
typedef bool BOOL;
#else
typedef signed char BOOL;
#endif
#define nil nullptr

typedef long NSInteger;
typedef unsigned long NSUInteger;
typedef double NSTimeInterval;

#pragma clang assume_nonnull begin

__attribute__((objc_root_class))
@interface NSObject
+ (instancetype)alloc;
- (instancetype)init;
- (void)release;
- (instancetype)autorelease;
- (BOOL)isKindOfClass:(Class)aClass;
+ (Class)class;
@end

@interface NSAutoreleasePool : NSObject
- (void)drain;
@end

__attribute__((objc_exception))
@interface NSException : NSObject
@end

@class NSData;

typedef NSUInteger NSStringEncoding;
enum : NSStringEncoding { NSUTF8StringEncoding = 4 };

@interface NSString : NSObject
+ (nullable instancetype)stringWithUTF8String:(const char*)nullTerminatedCString;
- (nullable instancetype)initWithBytes:(const void*)bytes length:(NSUInteger)len encoding:(NSStringEncoding)encoding;
- (NSString*)substringFromIndex:(NSUInteger)from;
- (nullable NSData*)dataUsingEncoding:(NSStringEncoding)encoding;
@property(nullable, readonly) const char* UTF8String __attribute__((objc_returns_inner_pointer));
@end

@interface NSData : NSObject
@property(readonly) NSUInteger length;
@property(readonly) const void* bytes __attribute__((objc_returns_inner_pointer));
- (instancetype)initWithBytes:(nullable const void*)bytes length:(NSUInteger)length;
- (instancetype)initWithBytesNoCopy:(void*)bytes
                             length:(NSUInteger)length
                        deallocator:(nullable void (^)(void* bytes, NSUInteger length))deallocator;
@end

typedef struct {
  unsigned long state;
  id __unsafe_unretained _Nullable* _Nullable itemsPtr;
  unsigned long* _Nullable mutationsPtr;
  unsigned long extra[5];
} NSFastEnumerationState;

@interface NSArray<__covariant ObjectType> : NSObject
- (NSUInteger)countByEnumeratingWithState:(NSFastEnumerationState*)state
                                  objects:(id __unsafe_unretained _Nullable[_Nonnull])buffer
                                    count:(NSUInteger)len;
@end

@interface NSMutableArray<ObjectType> : NSArray <ObjectType>
+ (instancetype)arrayWithCapacity:(NSUInteger)numItems;
- (void)addObject:(ObjectType)anObject;
- (void)insertObject:(ObjectType)anObject atIndex:(NSUInteger)index;
@end

@interface NSDictionary<__covariant KeyType, __covariant ObjectType> : NSObject
- (nullable ObjectType)objectForKey:(KeyType)aKey;
@end

@interface NSUserDefaults : NSObject
@property(class, readonly, strong) NSUserDefaults* standardUserDefaults;
- (nullable NSString*)stringForKey:(NSString*)defaultName;
- (void)setObject:(nullable id)value forKey:(NSString*)defaultName;
- (BOOL)synchronize;
@end

@interface NSError : NSObject
@property(readonly, copy) NSString* localizedDescription;
@end

@interface NSURL : NSObject
+ (nullable instancetype)URLWithString:(NSString*)URLString;
@end

typedef enum NSURLRequestCachePolicy : NSUInteger {
  NSURLRequestReloadIgnoringLocalCacheData = 1
} NSURLRequestCachePolicy;

@interface NSURLRequest : NSObject
+ (instancetype)requestWithURL:(NSURL*)URL
                   cachePolicy:(NSURLRequestCachePolicy)cachePolicy
               timeoutInterval:(NSTimeInterval)timeoutInterval;
@end

@interface NSMutableURLRequest : NSURLRequest
@property(copy) NSString* HTTPMethod;
@property(nullable, copy) NSData* HTTPBody;
- (void)setValue:(nullable NSString*)value forHTTPHeaderField:(NSString*)field;
@end

@interface NSURLResponse : NSObject
@end

@interface NSHTTPURLResponse : NSURLResponse
@property(readonly) NSInteger statusCode;
@end

#pragma clang assume_nonnull end
