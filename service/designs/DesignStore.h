// The designs that a service has received, and an index of their texts.
#pragma once

#include <atomic>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "Database.h"

namespace service {

struct StoredDesign {
  std::int64_t id = 0;  ///< the number of the record that brought it
  std::string fileUuid;
  std::string fileName;    ///< "Orders.fmp12"
  std::string receivedAt;  ///< UTC, ISO 8601 with milliseconds
  std::string version;     ///< of FileMaker, "22.0.1"
  std::int64_t bytes = 0;
  std::optional<std::string> label;
  std::optional<std::string> note;
  std::optional<std::string> problem;  ///< why it cannot be read
};

/// One line of an element's text, in all designs that contain it.
struct StoredHit {
  std::int64_t firstDesign = 0, lastDesign = 0;
  std::string fileName, kind, uuid, name, property;
  std::size_t line = 0;
  std::string text;
};

/// True for what begins as a design saved as XML by FileMaker does.
bool LooksLikeExport(std::string_view content);

/// What is received goes to the store; this keeps what it learns from that in a database of its own, so that a long
/// index never makes a poll wait. Programs may use it side by side. Not for use from two threads at once. Throws
/// std::runtime_error when a database fails.
class DesignStore {
 public:
  /// Opens the store in `folder`, which must exist, and creates the index that belongs to it.
  explicit DesignStore(const std::string& folder);

  /// Called with the name of a design before its index is made.
  using Begin = std::function<void(const std::string& name)>;

  /// Indexes what came since the last call, oldest first, and forgets what the store no longer has. Whatever is
  /// interrupted, by `stop` or by the end of the process, begins again with the next call.
  void CatchUp(const std::atomic<bool>& stop, const Begin& begin = nullptr);

  /// Oldest first; those of one file, by its name with or without ".fmp12" or its UUID, unless `file` is empty.
  std::vector<StoredDesign> List(const std::string& file);
  std::optional<StoredDesign> Find(std::int64_t id);

  /// The export as it came. Empty when the store no longer has it.
  std::string Content(std::int64_t id);

  /// Sets what is given; an empty text removes. False when there is no such design.
  bool Describe(std::int64_t id, const std::optional<std::string>& label, const std::optional<std::string>& note);

  /// Calls `found` for every line that contains `text`, in any case, in all designs or in those of one file. Gives up
  /// and returns false soon after `isWanted`, which is asked often, has returned false.
  bool Search(
      const std::string& text, const std::string& file, const std::function<void(const StoredHit&)>& found,
      const std::function<bool()>& isWanted = [] { return true; });

 private:
  struct Received;
  std::optional<Received> Next();
  struct Entry;
  Entry Examine(Received& received, const Begin& begin, const std::atomic<bool>& stop);
  void Keep(const Received& received, std::int64_t bytes, const Entry& entry);
  void ForgetPruned();
  std::string TextOf(std::int64_t number);

  Database received_;
  Database index_;
};

}  // namespace service
