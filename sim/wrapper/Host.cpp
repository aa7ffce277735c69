// The current host, and the guard around calls into plug-in code.
#include "wrapper/Host.h"

#include <cxxabi.h>

#include <cstdlib>
#include <exception>
#include <memory>
#include <typeinfo>

#include "calc/Errors.h"
#include "wrapper/Objects.h"

namespace wrapper {

namespace {

Host* host = nullptr;

// The type of the exception being handled.
std::string TypeName() {
  const std::type_info* type = abi::__cxa_current_exception_type();
  if (type == nullptr) return "a foreign exception";
  const std::unique_ptr<char, void (*)(void*)> name(abi::__cxa_demangle(type->name(), nullptr, nullptr, nullptr),
                                                    std::free);
  return name == nullptr ? type->name() : name.get();
}

}  // namespace

short Host::ExecuteSql(std::uint64_t, std::u16string_view, std::u16string_view, std::span<const calc::Value>, Rows&) {
  return calc::errors::kNotSupported;
}

short Host::ConvertFromFileMakerPath(std::uint64_t, std::u16string_view, int, std::u16string&) {
  return calc::errors::kNotSupported;
}

short Host::ConvertToFileMakerPath(std::uint64_t, std::u16string_view, int, std::u16string&) {
  return calc::errors::kNotSupported;
}

void Host::PluginThrew(const std::string&) {}

void SetHost(Host* newHost) { host = newHost; }

Host* CurrentHost() { return host; }

bool Guard(const std::string& owner, const std::string& what, const std::function<void()>& call) {
  std::string thrown;
  try {
    const Scope asPlugin(owner);
    call();
    return true;
  } catch (const std::exception& exception) {
    thrown = TypeName() + ": " + exception.what();
  } catch (...) {
    thrown = TypeName();
  }
  if (host != nullptr) host->PluginThrew(owner + ": " + what + " threw " + thrown);
  return false;
}

}  // namespace wrapper
