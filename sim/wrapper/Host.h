// The host's side of libFMWrapper: programs that load plug-ins (the simulated FileMaker, the tests) use it to answer
// their calls, call their functions and track the objects they hold. One thread at a time.
#pragma once

#include <FMWrapper/FMXTypes.h>

#include <FMWrapper/FMXCalcEngine.h>

#include <cstdint>
#include <functional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "calc/Value.h"

#define WRAPPER_API __attribute__((visibility("default")))

namespace wrapper {

/// The result rows of a query.
using Rows = std::vector<std::vector<calc::Value>>;

/// The numbers that plug-ins pass to request a path format.
enum PathFormat { kPosixPath = 1, kWindowsPath = 2, kUrlPath = 3 };

/// Answers the requests that plug-ins make in a calculation context. `file` is the host's own id of an open file; 0 for
/// none.
class WRAPPER_API Host {
 public:
  virtual ~Host() = default;
  /// 0 and the value, or a FileMaker error.
  virtual short Evaluate(std::uint64_t file, std::u16string_view expression, calc::Value& result) = 0;
  /// 0 and the rows, or a FileMaker error. An empty `fileName` means the file of the context.
  virtual short ExecuteSql(std::uint64_t file, std::u16string_view fileName, std::u16string_view sql,
                           std::span<const calc::Value> arguments, Rows& rows);
  /// 0 and the path in a PathFormat, or a FileMaker error.
  virtual short ConvertFromFileMakerPath(std::uint64_t file, std::u16string_view path, int format,
                                         std::u16string& result);
  /// 0 and FileMaker's form of a path in a PathFormat, or a FileMaker error.
  virtual short ConvertToFileMakerPath(std::uint64_t file, std::u16string_view path, int format,
                                       std::u16string& result);
  /// Plug-in code threw an exception; `line` describes it: "Leaky.fmx: Leaky.Open threw std::bad_alloc".
  virtual void PluginThrew(const std::string& line);
};

/// `host` must stay alive until it is replaced. With nullptr, every evaluation fails with error 1200.
WRAPPER_API void SetHost(Host* host);

/// Contents of host objects.
WRAPPER_API std::u16string TextOf(const fmx::Text& text);
WRAPPER_API calc::Value ValueOf(const fmx::Data& data);
WRAPPER_API void SetValue(fmx::Data& data, const calc::Value& value);
/// Makes `environment` evaluate in `file`.
WRAPPER_API void Bind(fmx::ExprEnv& environment, std::uint64_t file);

/// A function or script step that a plug-in registered.
struct Registration {
  std::string owner;   ///< the plug-in, as its Scope named it
  std::string plugin;  ///< its four-character identifier
  short id = 0;
  std::u16string name;
  std::u16string prototype;
  std::u16string description;
  short minArguments = 0;
  short maxArguments = 0;  ///< -1: any number
  unsigned flags = 0;
  fmx::ExtPluginType function = nullptr;
};

/// In order of registration; valid until the next registration or removal.
WRAPPER_API const std::vector<Registration>& Functions();
/// nullptr when not found. Names are case-insensitive.
WRAPPER_API const Registration* FindFunction(std::u16string_view name);
/// Calls a plug-in's function in the context of `file`. 0 and the value, 1201/1202 for a wrong number of arguments, or
/// the error the function returned, or 1200 when it threw.
WRAPPER_API short Call(const Registration& function, std::uint64_t file, std::span<const calc::Value> arguments,
                       calc::Value& result);
/// Removes everything that `owner` left registered and returns the names.
WRAPPER_API std::vector<std::u16string> DropRegistrations(const std::string& owner);

/// During a Scope's lifetime, new objects and mistakes are attributed to the plug-in it names.
class WRAPPER_API Scope {
 public:
  explicit Scope(std::string owner);
  ~Scope();
  Scope(const Scope&) = delete;
  Scope& operator=(const Scope&) = delete;

 private:
  std::string previous_;
};

/// Runs `call`, code of the plug-in `owner`, in its Scope. FileMaker would not survive an exception that escapes from
/// it; here the exception is reported to the host, with `what` as the name of the call, and the result is false.
WRAPPER_API bool Guard(const std::string& owner, const std::string& what, const std::function<void()>& call);

/// One line per plug-in and kind of object that is still alive: "Leaky.fmx: 2 Text objects never deleted".
WRAPPER_API std::vector<std::string> LiveObjects();
/// Mistakes so far, one per line: objects deleted twice, used after deletion, or deleted while owned by the host.
WRAPPER_API std::vector<std::string> Violations();
/// Clears the history and mistakes of all objects; for tests that make mistakes on purpose.
WRAPPER_API void ForgetViolations();

/// Makes one C function call, `afterCalls` calls from now and not counting deletions, report exception status `code`
/// (1 or 2) instead of doing its work. Replaces a pending fault.
WRAPPER_API void InjectException(int code, int afterCalls);
/// Cancels the pending fault; false when it has already occurred or none was set.
WRAPPER_API bool TakeBackException();

}  // namespace wrapper
