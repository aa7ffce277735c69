// An export as large as those of big solutions, and the memory that work on it takes.
#pragma once

#include <string>

namespace bench {

/// The sample, enlarged with copies of its longest script to 14 MB, in UTF-16 as FileMaker writes it.
std::string LargeExport();

/// The peak memory of this process so far, in bytes.
double PeakMemory();

}  // namespace bench
