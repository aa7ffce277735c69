#include "wrapper/Registry.h"

#include <algorithm>
#include <utility>

#include "calc/Errors.h"
#include "calc/Unicode.h"
#include "wrapper/Objects.h"

namespace wrapper {

namespace errors = calc::errors;

short Registry::Add(Registration registration) {
  const bool sensible = !registration.name.empty() && registration.function != nullptr &&
                        registration.minArguments >= 0 &&
                        (registration.maxArguments == -1 || registration.maxArguments >= registration.minArguments);
  if (!sensible) return errors::kGeneral;
  const bool taken = std::any_of(entries_.begin(), entries_.end(), [&](const Registration& entry) {
    return (entry.plugin == registration.plugin && entry.id == registration.id) ||
           calc::EqualIgnoringCase(entry.name, registration.name);
  });
  if (taken) return errors::kAlreadyRegistered;
  registration.owner = Ledger::Instance().owner();
  entries_.push_back(std::move(registration));
  return 0;
}

short Registry::Remove(const std::string& plugin, short id) {
  const auto removed =
      std::erase_if(entries_, [&](const Registration& entry) { return entry.plugin == plugin && entry.id == id; });
  return removed > 0 ? 0 : errors::kNoSuchFunction;
}

void Registry::Drop(const std::string& owner, std::vector<std::u16string>& names) {
  std::erase_if(entries_, [&](const Registration& entry) {
    if (entry.owner != owner) return false;
    names.push_back(entry.name);
    return true;
  });
}

Registry& FunctionRegistry() {
  static auto* registry = new Registry;
  return *registry;
}

Registry& StepRegistry() {
  static auto* registry = new Registry;
  return *registry;
}

const std::vector<Registration>& Functions() { return FunctionRegistry().entries(); }

const Registration* FindFunction(std::u16string_view name) {
  for (const auto& entry : Functions()) {
    if (calc::EqualIgnoringCase(entry.name, name)) return &entry;
  }
  return nullptr;
}

std::vector<std::u16string> DropRegistrations(const std::string& owner) {
  std::vector<std::u16string> names;
  FunctionRegistry().Drop(owner, names);
  StepRegistry().Drop(owner, names);
  return names;
}

short Call(const Registration& function, std::uint64_t file, std::span<const calc::Value> arguments,
           calc::Value& result) {
  const auto count = static_cast<long>(arguments.size());
  if (count < function.minArguments) return errors::kTooFewArguments;
  if (function.maxArguments != -1 && count > function.maxArguments) return errors::kTooManyArguments;

  const Scope asHost("");
  const fmx::ExprEnvUniquePtr environment;
  Bind(*environment, file);
  const fmx::DataVectUniquePtr list;
  for (const auto& argument : arguments) {
    const fmx::DataUniquePtr value;
    SetValue(*value, argument);
    list->PushBack(*value);
  }
  const fmx::DataUniquePtr answer;
  short error = 0;
  const bool returned = Guard(function.owner, calc::ToUtf8(function.name),
                              [&] { error = function.function(function.id, *environment, *list, *answer); });
  if (!returned) return errors::kGeneral;
  if (error == 0) result = ValueOf(*answer);
  return error;
}

}  // namespace wrapper
