// AppKit's general pasteboard, over the pasteboard that a test has made current. Declared as in Apple's headers.
#pragma once

#import <Foundation/Foundation.h>

typedef NSString* NSPasteboardType;

extern NSPasteboardType const NSPasteboardTypeString;

@interface NSPasteboard : NSObject
+ (NSPasteboard*)generalPasteboard;
- (NSInteger)changeCount;
- (NSInteger)declareTypes:(NSArray*)types owner:(id)owner;
- (BOOL)setData:(NSData*)data forType:(NSPasteboardType)type;
- (BOOL)setString:(NSString*)string forType:(NSPasteboardType)type;
- (NSArray*)types;
- (NSPasteboardType)availableTypeFromArray:(NSArray*)types;
- (NSData*)dataForType:(NSPasteboardType)type;
- (NSString*)stringForType:(NSPasteboardType)type;
@end
