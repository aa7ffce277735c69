// Calculation contexts and registration.
#include <utility>

#include "calc/Errors.h"
#include "wrapper/GetNames.h"
#include "wrapper/Host.h"
#include "wrapper/Objects.h"
#include "wrapper/Registry.h"

namespace wrapper {

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

// Runs a plug-in's request with the host as owner of new objects. Without a host, the request fails with error 1200.
template <class Question>
fmx::errcode Ask(Question question) {
  Host* host = CurrentHost();
  if (host == nullptr) return calc::errors::kGeneral;
  const Scope asHost("");
  return question(*host);
}

fmx::errcode Evaluate(const void* self, const std::u16string& expression, fmx::Data& result) {
  const auto file = Live<ExprEnvObject>(self).file;
  calc::Value value;
  const auto error = Ask([&](Host& host) { return host.Evaluate(file, expression, value); });
  SetValue(result, value);
  return error;
}

using PathConversion = short (Host::*)(std::uint64_t file, std::u16string_view path, int format,
                                       std::u16string& result);

fmx::errcode ConvertPath(PathConversion convert, const void* self, const fmx::Text& path, int format,
                         fmx::Text& result) {
  const auto file = Live<ExprEnvObject>(self).file;
  std::u16string converted;
  const auto error = Ask([&](Host& host) { return (host.*convert)(file, TextOf(path), format, converted); });
  Live<TextObject>(&result).Assign(std::move(converted));
  return error;
}

fmx::errcode ExecuteSql(const void* self, const fmx::Text& sql, const fmx::Text& file, const fmx::DataVect& parameters,
                        Rows& rows) {
  const auto context = Live<ExprEnvObject>(self).file;
  std::vector<calc::Value> arguments;
  for (const auto& value : Live<DataVectObject>(&parameters).values) arguments.push_back((*value)->value);
  return Ask([&](Host& host) { return host.ExecuteSql(context, TextOf(file), TextOf(sql), arguments, rows); });
}

void SetRows(fmx::RowVect& result, const Rows& rows) {
  auto& shown = Live<RowVectObject>(&result).rows;
  shown.clear();
  for (const auto& row : rows) {
    auto& list = *shown.emplace_back(std::make_unique<Part<DataVectObject>>());
    for (const auto& value : row) {
      DataObject data;
      data.Set(value, static_cast<fmx::int32>(value.type()));
      list->PushBack(data);
    }
  }
}

std::u16string Joined(const Rows& rows, char16_t columnSeparator, char16_t rowSeparator) {
  std::u16string text;
  for (const auto& row : rows) {
    if (&row != &rows.front()) text += rowSeparator;
    for (const auto& value : row) {
      if (&value != &row.front()) text += columnSeparator;
      text += value.AsText();
    }
  }
  return text;
}

}  // namespace

void Bind(fmx::ExprEnv& environment, std::uint64_t file) { Live<ExprEnvObject>(&environment).file = file; }

}  // namespace wrapper

namespace fmx {

using wrapper::HostCall;
using wrapper::Live;
namespace errors = calc::errors;

FM_API ExprEnv* FM_ExprEnv_Constructor1(_fmxcpt& x) {
  return HostCall(__func__, x, [&] { return wrapper::Make<wrapper::ExprEnvObject>(); });
}

FM_API void FM_ExprEnv_Delete(void* self, _fmxcpt&) { wrapper::Delete<wrapper::ExprEnvObject>(__func__, self); }

FM_API errcode FM_ExprEnv_Evaluate(const void* self, const Text& expression, Data& result, _fmxcpt& x) {
  return HostCall(__func__, x, [&] { return wrapper::Evaluate(self, wrapper::TextOf(expression), result); });
}

FM_API errcode FM_ExprEnv_EvaluateGetFunction(const void* self, short function, Data& result, _fmxcpt& x) {
  return HostCall(__func__, x, [&]() -> errcode {
    const auto name = wrapper::GetFunctionName(function);
    if (name.empty()) return errors::kInvalidGetParameter;
    return wrapper::Evaluate(self, u"Get ( " + std::u16string(name) + u" )", result);
  });
}

FM_API errcode FM_ExprEnv_EvaluateConvertFromFileMakerPath(const void* self, const Text& path, int32 format,
                                                           Text& result, _fmxcpt& x) {
  return HostCall(__func__, x, [&] {
    return wrapper::ConvertPath(&wrapper::Host::ConvertFromFileMakerPath, self, path, format, result);
  });
}

FM_API errcode FM_ExprEnv_EvaluateConvertToFileMakerPath(const void* self, const Text& path, int32 format, Text& result,
                                                         _fmxcpt& x) {
  return HostCall(__func__, x, [&] {
    return wrapper::ConvertPath(&wrapper::Host::ConvertToFileMakerPath, self, path, format, result);
  });
}

FM_API errcode FM_ExprEnv_ExecuteFileSQL(const void* self, const Text& sql, const Text& file,
                                         const DataVect& parameters, RowVect& result, _fmxcpt& x) {
  return HostCall(__func__, x, [&] {
    wrapper::Rows rows;
    const errcode error = wrapper::ExecuteSql(self, sql, file, parameters, rows);
    wrapper::SetRows(result, rows);
    return error;
  });
}

FM_API errcode FM_ExprEnv_ExecuteFileSQLTextResult(const void* self, const Text& sql, const Text& file,
                                                   const DataVect& parameters, Data& result, uint16 columnSeparator,
                                                   uint16 rowSeparator, _fmxcpt& x) {
  return HostCall(__func__, x, [&] {
    wrapper::Rows rows;
    const errcode error = wrapper::ExecuteSql(self, sql, file, parameters, rows);
    const auto text =
        wrapper::Joined(rows, static_cast<char16_t>(columnSeparator), static_cast<char16_t>(rowSeparator));
    wrapper::SetValue(result, error == 0 ? calc::Value::OfText(text) : calc::Value::OfError(error));
    return error;
  });
}

FM_API errcode FM_ExprEnv_RegisterExternalFunctionEx(const QuadChar& plugin, short id, const Text& name,
                                                     const Text& prototype, const Text& description, short minArguments,
                                                     short maxArguments, uint32 flags, ExtPluginType function,
                                                     _fmxcpt& x) {
  return HostCall(__func__, x, [&] {
    auto registration = wrapper::MakeRegistration(plugin, id, name, prototype, flags, function);
    registration.description = wrapper::TextOf(description);
    registration.minArguments = minArguments;
    registration.maxArguments = maxArguments;
    return wrapper::FunctionRegistry().Add(std::move(registration));
  });
}

FM_API errcode FM_ExprEnv_RegisterExternalFunction(const QuadChar& plugin, short id, const Text& name,
                                                   const Text& prototype, short minArguments, short maxArguments,
                                                   uint32 flags, ExtPluginType function, _fmxcpt& x) {
  return HostCall(__func__, x, [&] {
    auto registration = wrapper::MakeRegistration(plugin, id, name, prototype, flags, function);
    registration.minArguments = minArguments;
    registration.maxArguments = maxArguments;
    return wrapper::FunctionRegistry().Add(std::move(registration));
  });
}

FM_API errcode FM_ExprEnv_UnRegisterExternalFunction(const QuadChar& plugin, short id, _fmxcpt& x) {
  return HostCall(__func__, x, [&] { return wrapper::FunctionRegistry().Remove(wrapper::PluginId(plugin), id); });
}

FM_API errcode FM_ExprEnv_RegisterScriptStep(const QuadChar& plugin, short id, const Text& name, const Text& definition,
                                             const Text& description, uint32 flags, ExtPluginType step, _fmxcpt& x) {
  return HostCall(__func__, x, [&] {
    auto registration = wrapper::MakeRegistration(plugin, id, name, definition, flags, step);
    registration.description = wrapper::TextOf(description);
    registration.maxArguments = -1;
    return wrapper::StepRegistry().Add(std::move(registration));
  });
}

FM_API errcode FM_ExprEnv_UnRegisterScriptStep(const QuadChar& plugin, short id, _fmxcpt& x) {
  return HostCall(__func__, x, [&] { return wrapper::StepRegistry().Remove(wrapper::PluginId(plugin), id); });
}

FM_API ptrtype FM_ExprEnv_SessionID(const void* self, _fmxcpt& x) {
  return HostCall(__func__, x, [&] {
    Live<wrapper::ExprEnvObject>(self);
    return wrapper::kOnlySession;
  });
}

FM_API ptrtype FM_ExprEnv_FileID(const void* self, _fmxcpt& x) {
  return HostCall(__func__, x, [&] { return static_cast<ptrtype>(Live<wrapper::ExprEnvObject>(self).file); });
}

}  // namespace fmx
