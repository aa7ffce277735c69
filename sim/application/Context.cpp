#include "application/Context.h"

#include "application/GetFunctions.h"
#include "calc/Unicode.h"

namespace sim {

namespace {

// A bare field name belongs to the table of the current layout: the file's start layout, since layouts never change
// here.
const TableOccurrence* LayoutOccurrence(const Solution& solution) {
  const Layout* layout = StartLayout(solution);
  return layout == nullptr || !layout->occurrenceId ? nullptr : solution.FindOccurrence(*layout->occurrenceId);
}

}  // namespace

Context::Context(Application& application, OpenFile* file) : application_(application), file_(file) {}

std::optional<calc::Value> Context::Get(std::u16string_view parameter) { return EvaluateGet(parameter, *this); }

std::optional<calc::Value> Context::Field(std::u16string_view occurrence, std::u16string_view field, int) {
  if (FieldName(occurrence, field).empty()) return std::nullopt;
  return calc::Value();  // an export holds no records
}

std::u16string Context::FieldName(std::u16string_view occurrenceName, std::u16string_view name) {
  if (file_ == nullptr) return {};
  const Solution& solution = file_->solution;
  const auto* occurrence =
      occurrenceName.empty() ? LayoutOccurrence(solution) : solution.FindOccurrence(occurrenceName);
  const auto* table = occurrence == nullptr ? nullptr : solution.TableOf(*occurrence);
  if (table == nullptr) return {};
  for (const auto& field : table->fields) {
    if (calc::EqualIgnoringCase(field.name, name)) return occurrence->name + u"::" + field.name;
  }
  return {};
}

const calc::HostFunction* Context::FindHostFunction(std::u16string_view name) {
  return application_.FindHostFunction(name);
}

const calc::CustomFunction* Context::FindCustomFunction(std::u16string_view name) {
  if (file_ == nullptr) return nullptr;
  for (const auto& function : file_->solution.customFunctions) {
    if (calc::EqualIgnoringCase(function.name, name)) return &function;
  }
  return nullptr;
}

const ScriptFrame* Context::script() const {
  const ScriptFrame* running = application_.runningScript;
  return running != nullptr && running->file == file_ ? running : nullptr;
}

calc::Variables& Context::Locals() {
  if (script() != nullptr) return application_.runningScript->locals;
  return file_ != nullptr ? file_->locals : application_.locals;
}

calc::Variables& Context::Globals() { return file_ != nullptr ? file_->globals : application_.globals; }

}  // namespace sim
