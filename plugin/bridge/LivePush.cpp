#include "bridge/LivePush.h"

#include <cstdio>
#include <memory>
#include <string>
#include <string_view>
#include <utility>

#include "bridge/Account.h"
#include "bridge/Background.h"
#include "bridge/BridgeState.h"
#include "bridge/Notify.h"
#include "bridge/SchemaRequest.h"
#include "bridge/ServiceMessages.h"
#include "core/Ascii.h"
#include "core/HostText.h"
#include "net/Network.h"
#include "net/PercentEncode.h"

namespace {

/// A file that goes with its upload: also when the job is dropped or memory runs out.
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

// The extension is told by its exact case, before the rest of the name loses its own.
std::string_view WithoutExtension(std::string_view name) {
  constexpr std::string_view kExtension = ".fmp12";
  if (name.size() > kExtension.size() && name.ends_with(kExtension)) name.remove_suffix(kExtension.size());
  return name;
}

bool IsAbout(const std::string& target, const std::string& file) {
  return target.empty() || EqualIgnoringAsciiCase(WithoutExtension(target), WithoutExtension(file));
}

// Takes the waiting request, if there is one and it is about `currentFile`.
Upload Claim(std::shared_ptr<ConsumedFile> file, const std::string& currentFile) {
  Upload upload{std::move(file), currentFile, {}, CurrentAccount()};
  if (IsAbout(g_pendingTargetFileName, currentFile)) {
    upload.targetName = g_pendingTargetFileName;
    upload.cmdId = g_pendingGetSchemaCmdId;
    ForgetSchemaRequest();
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
  SendComplete(upload.account.baseUrl, upload.account.licenseKey, upload.cmdId, error.empty() ? "completed" : "failed",
               error.empty() ? "" : "Upload failed: " + error);
}

}  // namespace

fmx::errcode Do_LivePush(short, const fmx::ExprEnv& env, const fmx::DataVect& args, fmx::Data& result) {
  const std::string posixPath = GetTextArg(args, 0);
  std::string outcome = EmptyArgumentError({{"posixPath", posixPath}});
  if (outcome.empty()) {
    const std::string currentFile = EvalCalc(const_cast<fmx::ExprEnv*>(&env), "Get(FileName)");
    auto file = std::make_shared<ConsumedFile>(posixPath);
    bg([upload = Claim(std::move(file), currentFile)] { Send(upload); });
    outcome = "OK";
  }
  SetTextResult(outcome, result);
  return 0;
}
