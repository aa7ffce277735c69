// The calculation context of one open file.
#pragma once

#include "application/Application.h"
#include "calc/Environment.h"

namespace sim {

/// Sees the fields, custom functions and variables of `file`, and the variables of the running script if it is one of
/// that file. `file` may be null; then only names that need no file are found. Both must outlive the context.
class Context : public calc::Environment {
 public:
  Context(Application& application, OpenFile* file);

  std::optional<calc::Value> Get(std::u16string_view parameter) override;
  std::optional<calc::Value> Field(std::u16string_view occurrence, std::u16string_view field, int repetition) override;
  std::u16string FieldName(std::u16string_view occurrence, std::u16string_view field) override;
  void ReportUnknownName(std::u16string_view name) override { application_.unknownName = name; }
  const calc::HostFunction* FindHostFunction(std::u16string_view name) override;
  const calc::CustomFunction* FindCustomFunction(std::u16string_view name) override;
  calc::Variables& Locals() override;
  calc::Variables& Globals() override;
  const std::atomic<int>* CancelFlag() const override { return application_.cancelFlag; }

  Application& application() const { return application_; }
  const OpenFile* file() const { return file_; }
  /// The running script, if it is one of this file.
  const ScriptFrame* script() const;

 private:
  Application& application_;
  OpenFile* file_;
};

}  // namespace sim
