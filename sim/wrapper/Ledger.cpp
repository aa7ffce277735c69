#include "wrapper/Ledger.h"

#include <map>
#include <new>
#include <stdexcept>
#include <utility>

#include "wrapper/Host.h"

namespace wrapper {

Ledger& Ledger::Instance() {
  static auto* ledger = new Ledger;  // outlives the plug-ins' own destructors
  return *ledger;
}

std::string Ledger::SetOwner(std::string owner) {
  const std::lock_guard lock(mutex_);
  return std::exchange(owner_, std::move(owner));
}

std::string Ledger::owner() const {
  const std::lock_guard lock(mutex_);
  return owner_;
}

void Ledger::Add(const void* object, const char* kind) {
  const std::lock_guard lock(mutex_);
  live_[object] = {kind, owner_, false};
}

void Ledger::AddPart(const void* object, const char* kind) {
  const std::lock_guard lock(mutex_);
  live_[object] = {kind, owner_, true};
}

bool Ledger::Remove(const void* object, const char* kind) {
  const std::lock_guard lock(mutex_);
  const auto entry = live_.find(object);
  if (entry == live_.end() || entry->second.kind != kind) {
    Note(std::string("not a live ") + kind + " (deleted twice?)");
    return false;
  }
  if (entry->second.part) {
    Note(std::string("a ") + kind + " that belongs to another object");
    return false;
  }
  live_.erase(entry);
  return true;
}

void Ledger::RemovePart(const void* object) {
  const std::lock_guard lock(mutex_);
  live_.erase(object);
}

bool Ledger::IsLive(const void* object, const char* kind) const {
  const std::lock_guard lock(mutex_);
  const auto entry = live_.find(object);
  return entry != live_.end() && entry->second.kind == kind;
}

void Ledger::EnterCall(const char* function) {
  const std::lock_guard lock(mutex_);
  call_ = function;
}

void Ledger::RaiseInjected() {
  const std::lock_guard lock(mutex_);
  if (!injection_ || injection_->afterCalls-- > 0) return;
  const int code = injection_->code;
  injection_.reset();
  if (code == fmx::_fmxcpt::kBadAlloc) throw std::bad_alloc();
  throw std::runtime_error("injected");
}

void Ledger::InjectException(int code, int afterCalls) {
  const std::lock_guard lock(mutex_);
  injection_ = {code, afterCalls};
}

bool Ledger::TakeBackException() {
  const std::lock_guard lock(mutex_);
  const bool waits = injection_.has_value();
  injection_.reset();
  return waits;
}

void Ledger::NoteMisuse(const char* kind) {
  const std::lock_guard lock(mutex_);
  Note(std::string("not a live ") + kind);
}

void Ledger::Note(const std::string& what) {
  violations_.push_back((owner_.empty() ? "the host" : owner_) + ": " + call_ + ": " + what);
}

std::vector<std::string> Ledger::LiveObjects() const {
  const std::lock_guard lock(mutex_);
  std::map<std::pair<std::string, std::string>, int> counts;
  for (const auto& [object, entry] : live_) {
    if (!entry.part) ++counts[{entry.owner, entry.kind}];
  }
  std::vector<std::string> lines;
  for (const auto& [key, count] : counts) {
    lines.push_back((key.first.empty() ? "the host" : key.first) + ": " + std::to_string(count) + " " + key.second +
                    (count == 1 ? " object" : " objects") + " never deleted");
  }
  return lines;
}

std::vector<std::string> Ledger::Violations() const {
  const std::lock_guard lock(mutex_);
  return violations_;
}

void Ledger::ForgetViolations() {
  const std::lock_guard lock(mutex_);
  violations_.clear();
}

Scope::Scope(std::string owner) : previous_(Ledger::Instance().SetOwner(std::move(owner))) {}
Scope::~Scope() { Ledger::Instance().SetOwner(std::move(previous_)); }

std::vector<std::string> LiveObjects() { return Ledger::Instance().LiveObjects(); }
std::vector<std::string> Violations() { return Ledger::Instance().Violations(); }
void ForgetViolations() { Ledger::Instance().ForgetViolations(); }

void InjectException(int code, int afterCalls) { Ledger::Instance().InjectException(code, afterCalls); }
bool TakeBackException() { return Ledger::Instance().TakeBackException(); }

}  // namespace wrapper
