#include "host/FileFunctions.h"

#include <string>

#include "core/HostText.h"
#include "host/FileIO.h"

fmx::errcode Do_ReadFile(short, const fmx::ExprEnv&, const fmx::DataVect& args, fmx::Data& result) {
  const std::string path = GetTextArg(args, 0);
  std::string content;
  std::string error = EmptyArgumentError({{"path", path}});
  const bool read = error.empty() && FileIO::Read(path, content, error);
  SetTextResult(read ? content : error, result);
  return 0;
}

fmx::errcode Do_POSIXPath(short, const fmx::ExprEnv&, const fmx::DataVect& args, fmx::Data& result) {
  std::string path = GetTextArg(args, 0);
  if (path.starts_with('/')) {
    const std::size_t volumeEnd = path.find('/', 1);
    if (volumeEnd != std::string::npos) path.erase(0, volumeEnd);
  }
  SetTextResult(path, result);
  return 0;
}
