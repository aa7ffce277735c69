// Who holds which host object, and what was done wrong with one. Safe on any thread.
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

  /// The plug-in that acts now; "" is the host itself. Returns the previous one.
  std::string SetOwner(std::string owner);
  std::string owner() const;

  /// Notes a new object of the current owner. `kind` must be a constant of static storage, compared by its address.
  void Add(const void* object, const char* kind);
  /// Notes a part of another object, which plug-ins may use but not delete.
  void AddPart(const void* object, const char* kind);
  /// False, and a mistake is noted, when `object` is not a live object of its own.
  bool Remove(const void* object, const char* kind);
  void RemovePart(const void* object);
  bool IsLive(const void* object, const char* kind) const;

  /// Called first in every C function.
  void EnterCall(const char* function);
  /// Raises what a test has asked for.
  void RaiseInjected();
  void InjectException(int code, int afterCalls);
  bool TakeBackException();

  /// Notes that the current call was given a dead or foreign object.
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
