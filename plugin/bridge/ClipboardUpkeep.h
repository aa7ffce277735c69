// What an idle call does for the clipboard. Mirroring: FileMaker objects are written back under every type name of
// their kind. Preparation: text that is FileMaker XML becomes pasteable as objects, unless the clipboard already holds
// it as objects. FileMaker's main thread only.
#pragma once

/// Does one idle call's upkeep. Failures are silent and tried again: mirroring at the next call, preparation at its
/// next interval.
void KeepClipboardConvertible();
