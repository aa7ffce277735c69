// Calculation contexts and registration.
#include <utility>

#include "calc/Errors.h"
#include "wrapper/Host.h"
#include "wrapper/Objects.h"
#include "wrapper/Registry.h"

namespace fmhost {

namespace {

constexpr fmx::ptrtype kOnlySession = 1;

std::string PluginId(const fmx::QuadChar& id) {
  const auto& bytes = Live<QuadCharObject>(&id).bytes;
  return {bytes.begin(), bytes.end()};
}

Registration MakeRegistration(const fmx::QuadChar& plugin, short id, const fmx::Text& name, const fmx::Text& prototype,
                              fmx::uint32 flags, fmx::ExtPluginType function) {
  Registration registration;
  registration.plugin = PluginId(plugin);
  registration.id = id;
  registration.name = TextOf(name);
  registration.prototype = TextOf(prototype);
  registration.flags = flags;
  registration.function = function;
  return registration;
}

}  // namespace

void Bind(fmx::ExprEnv& environment, std::uint64_t file) { Live<ExprEnvObject>(&environment).file = file; }

}  // namespace fmhost

namespace fmx {

using fmhost::HostCall;
using fmhost::Live;

FM_API ExprEnv* FM_ExprEnv_Constructor1(_fmxcpt& x) {
  return HostCall(__func__, x, [&] { return reinterpret_cast<ExprEnv*>(fmhost::Make<fmhost::ExprEnvObject>()); });
}

FM_API void FM_ExprEnv_Delete(void* self, _fmxcpt&) { fmhost::Delete<fmhost::ExprEnvObject>(__func__, self); }

FM_API errcode FM_ExprEnv_Evaluate(const void* self, const Text& expression, Data& result, _fmxcpt& x) {
  return HostCall(__func__, x, [&]() -> errcode {
    const auto file = Live<fmhost::ExprEnvObject>(self).file;
    fmhost::Host* host = fmhost::CurrentHost();
    if (host == nullptr) return calc::errors::kGeneral;
    const fmhost::Scope asHost("");
    calc::Value value;
    const errcode error = host->Evaluate(file, fmhost::TextOf(expression), value);
    fmhost::SetValue(result, value);
    return error;
  });
}

FM_API errcode FM_ExprEnv_EvaluateGetFunction(const void* self, short, Data&, _fmxcpt& x) {
  return HostCall(__func__, x, [&] { return Live<fmhost::ExprEnvObject>(self), calc::errors::kNotSupported; });
}

FM_API errcode FM_ExprEnv_ExecuteFileSQLTextResult(const void* self, const Text& sql, const Text& file,
                                                   const DataVect& parameters, Data& result, uint16 columnSeparator,
                                                   uint16 rowSeparator, _fmxcpt& x) {
  return HostCall(__func__, x, [&]() -> errcode {
    const auto context = Live<fmhost::ExprEnvObject>(self).file;
    fmhost::Host* host = fmhost::CurrentHost();
    if (host == nullptr) return calc::errors::kGeneral;
    std::vector<calc::Value> arguments;
    for (const auto& value : Live<fmhost::DataVectObject>(&parameters).values) arguments.push_back(value->value);
    const fmhost::Scope asHost("");
    calc::Value value;
    const errcode error =
        host->ExecuteSql(context, fmhost::TextOf(file), fmhost::TextOf(sql), arguments,
                         static_cast<char16_t>(columnSeparator), static_cast<char16_t>(rowSeparator), value);
    fmhost::SetValue(result, value);
    return error;
  });
}

FM_API errcode FM_ExprEnv_RegisterExternalFunctionEx(const QuadChar& plugin, short id, const Text& name,
                                                     const Text& prototype, const Text& description, short minArguments,
                                                     short maxArguments, uint32 flags, ExtPluginType function,
                                                     _fmxcpt& x) {
  return HostCall(__func__, x, [&] {
    auto registration = fmhost::MakeRegistration(plugin, id, name, prototype, flags, function);
    registration.description = fmhost::TextOf(description);
    registration.minArguments = minArguments;
    registration.maxArguments = maxArguments;
    return fmhost::FunctionRegistry().Add(std::move(registration));
  });
}

FM_API errcode FM_ExprEnv_RegisterExternalFunction(const QuadChar& plugin, short id, const Text& name,
                                                   const Text& prototype, short minArguments, short maxArguments,
                                                   uint32 flags, ExtPluginType function, _fmxcpt& x) {
  return HostCall(__func__, x, [&] {
    auto registration = fmhost::MakeRegistration(plugin, id, name, prototype, flags, function);
    registration.minArguments = minArguments;
    registration.maxArguments = maxArguments;
    return fmhost::FunctionRegistry().Add(std::move(registration));
  });
}

FM_API errcode FM_ExprEnv_UnRegisterExternalFunction(const QuadChar& plugin, short id, _fmxcpt& x) {
  return HostCall(__func__, x, [&] { return fmhost::FunctionRegistry().Remove(fmhost::PluginId(plugin), id); });
}

FM_API errcode FM_ExprEnv_RegisterScriptStep(const QuadChar& plugin, short id, const Text& name, const Text& definition,
                                             const Text& description, uint32 flags, ExtPluginType step, _fmxcpt& x) {
  return HostCall(__func__, x, [&] {
    auto registration = fmhost::MakeRegistration(plugin, id, name, definition, flags, step);
    registration.description = fmhost::TextOf(description);
    registration.maxArguments = -1;
    return fmhost::StepRegistry().Add(std::move(registration));
  });
}

FM_API errcode FM_ExprEnv_UnRegisterScriptStep(const QuadChar& plugin, short id, _fmxcpt& x) {
  return HostCall(__func__, x, [&] { return fmhost::StepRegistry().Remove(fmhost::PluginId(plugin), id); });
}

FM_API ptrtype FM_ExprEnv_SessionID(const void* self, _fmxcpt& x) {
  return HostCall(__func__, x, [&] { return Live<fmhost::ExprEnvObject>(self), fmhost::kOnlySession; });
}

FM_API ptrtype FM_ExprEnv_FileID(const void* self, _fmxcpt& x) {
  return HostCall(__func__, x, [&] { return static_cast<ptrtype>(Live<fmhost::ExprEnvObject>(self).file); });
}

}  // namespace fmx
