// The owners of host objects, and the mistakes made with them. Safe on any thread.
#pragma once

#include <mutex>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

namespace wrapper {

class Ledger {
 public:
  static Ledger& Instance();

  /// Sets the plug-in that is running; "" is the host itself. Returns the previous one.
  std::string SetOwner(std::string owner);
  std::string owner() const;

  /// Records a new object of the current owner. `kind` must have static storage; it is compared by address.
  void Add(const void* object, const char* kind);
  /// Records a part of another object, which plug-ins may use but not delete.
  void AddPart(const void* object, const char* kind);
  /// Returns false and records a mistake when `object` is dead or is part of another object.
  bool Remove(const void* object, const char* kind);
  void RemovePart(const void* object);
  bool IsLive(const void* object, const char* kind) const;

  /// Called first in every C function.
  void EnterCall(const char* function);
  /// Throws the fault that a test has injected.
  void RaiseInjected();
  void InjectException(int code, int afterCalls);
  bool TakeBackException();

  /// Records that the current call received a dead or foreign object.
  void NoteMisuse(const char* kind);

  std::vector<std::string> LiveObjects() const;
  std::vector<std::string> Violations() const;
  void ForgetViolations();

 private:
  struct Entry {
    const char* kind;
    std::string owner;
    bool part;
  };
  struct Injection {
    int code;
    int afterCalls;
  };

  void Note(const std::string& what);

  mutable std::mutex mutex_;
  std::unordered_map<const void*, Entry> live_;
  std::optional<Injection> injection_;
  std::vector<std::string> violations_;
  std::string owner_;
  const char* call_ = "";
};

}  // namespace wrapper
