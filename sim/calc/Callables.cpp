// The register of the engine's functions, made of the tables of all topics.
#include "calc/Callables.h"

#include <algorithm>
#include <unordered_map>
#include <vector>

#include "calc/Engine.h"
#include "calc/Evaluator.h"
#include "calc/Unicode.h"

namespace calc {
namespace {

struct FormName {
  std::u16string_view name;
  Form form;
};

constexpr FormName kForms[] = {{u"Get", Form::kGet}, {u"Let", Form::kLet}, {u"While", Form::kWhile}};
// The number of arguments is checked by the parser of each form.
constexpr Signature kFormSignature{1, kAnyNumber};

struct Entry {
  std::u16string_view name;
  Callable callable;
};

std::vector<Entry> MakeEntries() {
  std::vector<Entry> entries;
  for (const FormName& form : kForms) entries.push_back({form.name, {form.form, kFormSignature}});
  for (const ControlFunction& function : ControlFunctions()) {
    entries.push_back({function.name, {&function, function.signature}});
  }
  for (const auto table :
       {TextFunctions(), SearchFunctions(), WordFunctions(), ListFunctions(), EncodingFunctions(), JsonFunctions(),
        NumberFunctions(), AggregateFunctions(), MathFunctions(), DateFunctions(), ConversionFunctions()}) {
    for (const Builtin& function : table) entries.push_back({function.name, {&function, function.signature}});
  }
  return entries;
}

const std::vector<Entry>& Entries() {
  static const std::vector<Entry> entries = MakeEntries();
  return entries;
}

const Callable* FindOwn(std::u16string_view name) {
  static const auto index = [] {
    std::unordered_map<std::u16string, const Callable*> result;
    for (const Entry& entry : Entries()) result.emplace(FoldCase(entry.name), &entry.callable);
    return result;
  }();
  const auto found = index.find(FoldCase(name));
  return found == index.end() ? nullptr : found->second;
}

}  // namespace

Callable FindCallable(std::u16string_view name, Environment& environment) {
  if (const Callable* own = FindOwn(name)) return *own;
  if (const CustomFunction* custom = environment.FindCustomFunction(name)) {
    const auto count = static_cast<int>(custom->parameters.size());
    return {custom, {count, count}};
  }
  if (const HostFunction* host = environment.FindHostFunction(name)) {
    return {host, {host->minArguments, host->maxArguments}};
  }
  return {};
}

std::vector<std::u16string> FunctionNames() {
  std::vector<std::u16string> names;
  for (const Entry& entry : Entries()) names.emplace_back(entry.name);
  std::sort(names.begin(), names.end(),
            [](const std::u16string& a, const std::u16string& b) { return CompareTexts(a, b) < 0; });
  return names;
}

}  // namespace calc
