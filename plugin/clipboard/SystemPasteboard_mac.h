// The pasteboard that the operations work on: the general one, which is the user's clipboard. Tests define their own.
#pragma once

#import <AppKit/AppKit.h>
#import <ApplicationServices/ApplicationServices.h>

/// Raises when AppKit cannot reach the pasteboard server.
NSPasteboard* SystemPasteboard();

/// The name of the same pasteboard for Carbon.
CFStringRef SystemPasteboardName();
