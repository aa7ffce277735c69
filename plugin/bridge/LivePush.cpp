#include "bridge/LivePush.h"

#include <cstdio>
#include <memory>
#include <optional>
#include <string>
#include <utility>

#include "bridge/Account.h"
#include "bridge/Background.h"
#include "bridge/Notify.h"
#include "bridge/SchemaRequest.h"
#include "bridge/ServiceMessages.h"
#include "core/HostText.h"
#include "core/State.h"
#include "net/Network.h"
#include "net/PercentEncode.h"

namespace {

/// A file that is deleted once its upload has ended, even if the job is dropped or memory runs out.
class ConsumedFile {
 public:
  explicit ConsumedFile(std::string path) : path_(std::move(path)) {}
  ~ConsumedFile() { Remove(); }
  ConsumedFile(const ConsumedFile&) = delete;
  ConsumedFile& operator=(const ConsumedFile&) = delete;

  const std::string& path() const { return path_; }
  void Remove() {
    if (!removed_) std::remove(path_.c_str());
    removed_ = true;
  }

 private:
  const std::string path_;
  bool removed_ = false;
};

struct Upload {
  std::shared_ptr<ConsumedFile> file;
  std::string targetName;  // in messages; may be empty
  std::string cmdId;       // the schema request to complete, or ""
  Account account;
};

Upload Claim(std::shared_ptr<ConsumedFile> file, std::string currentFile) {
  Upload upload{std::move(file), std::move(currentFile), {}, CurrentAccount()};
  if (auto claim = ClaimSchemaRequest(upload.targetName)) {
    upload.targetName = std::move(claim->target);
    upload.cmdId = std::move(claim->commandId);
  }
  if (upload.targetName.empty()) upload.targetName = g_registeredFileName;
  return upload;
}

std::string IngestUrl(const Upload& upload) {
  const std::string name = (upload.targetName.empty() ? "schema" : upload.targetName) + ".fmp12.xml";
  return upload.account.baseUrl + "/api/live/ingest/" + upload.account.licenseKey + "?filename=" + PercentEncode(name);
}

void Send(const Upload& upload) {
  std::string response, error;
  Network::PostFile(IngestUrl(upload), upload.file->path(), response, error);
  upload.file->Remove();
  if (!error.empty()) {
    const std::string message = "Could not send schema for \"" + upload.targetName + "\": " + error;
    Notify("Varnix — Upload Failed", WithoutKey(message, upload.account.licenseKey));
  }
  if (upload.cmdId.empty()) return;
  EndCommand(upload.account, upload.cmdId, error.empty() ? std::nullopt : std::optional("Upload failed: " + error));
}

}  // namespace

fmx::errcode Do_LivePush(short, const fmx::ExprEnv& env, const fmx::DataVect& args, fmx::Data& result) {
  const std::string posixPath = GetTextArg(args, 0);
  const std::string error = EmptyArgumentError({{"posixPath", posixPath}});
  if (error.empty()) {
    std::string currentFile = EvalCalc(&env, "Get(FileName)");
    auto file = std::make_shared<ConsumedFile>(posixPath);
    bg([upload = Claim(std::move(file), std::move(currentFile))] { Send(upload); });
  }
  SetTextResult(error.empty() ? "OK" : error, result);
  return 0;
}
