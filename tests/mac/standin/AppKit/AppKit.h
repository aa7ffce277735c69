// AppKit's general pasteboard, over the pasteboard that a test has made current. Declared as in Apple's headers.
#pragma once

#import <Foundation/Foundation.h>

#pragma clang assume_nonnull begin

typedef NSString* NSPasteboardType;

extern NSPasteboardType const NSPasteboardTypeString;

@interface NSPasteboard : NSObject
+ (NSPasteboard*)generalPasteboard;
- (NSInteger)declareTypes:(NSArray*)types owner:(id _Nullable)owner;
- (BOOL)setData:(NSData* _Nullable)data forType:(NSPasteboardType)type;
- (BOOL)setString:(NSString*)string forType:(NSPasteboardType)type;
- (NSArray* _Nullable)types;
- (NSPasteboardType _Nullable)availableTypeFromArray:(NSArray*)types;
- (NSData* _Nullable)dataForType:(NSPasteboardType)type;
- (NSString* _Nullable)stringForType:(NSPasteboardType)type;
@end

#pragma clang assume_nonnull end
