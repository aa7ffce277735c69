// What an idle call does for the clipboard: FileMaker XML of any program is kept there under every name, and text that
// is FileMaker XML becomes pasteable into FileMaker. FileMaker's main thread only.
#pragma once

/// One idle call's worth of upkeep. Failures are silent and tried again: mirroring on the next call, preparation when
/// it next looks.
void KeepClipboardConvertible();
