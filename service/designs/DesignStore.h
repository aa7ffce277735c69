// The designs that a service has received, and an index of their texts.
#pragma once

#include <atomic>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "store/Database.h"

namespace service {

struct StoredDesign {
  std::int64_t id = 0;  ///< the number of the record with the export
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

/// True for content that starts like a design that FileMaker saved as XML.
bool LooksLikeExport(std::string_view content);

/// Reads received exports from the store, and keeps its index in a separate database, so that a poll never waits for
/// indexing. Several programs may use the same index; within one program, each object belongs to one thread at a time.
/// Throws std::runtime_error when a database fails.
class DesignStore {
 public:
  /// The path of the index in `folder`.
  static std::string PathIn(const std::string& folder);

  /// Opens the store in `folder`, which must exist, and opens or creates its index.
  explicit DesignStore(const std::string& folder);

  /// Called with the name of a design before it is indexed.
  using Begin = std::function<void(const std::string& name)>;

  /// Indexes the records that the index does not know yet, oldest first, and removes designs that the store no longer
  /// has. The numbers of records may now belong to others, because the database was replaced by an older copy.
  /// A design whose indexing was interrupted, by `stop` or by the end of the process, is indexed by the next call.
  void CatchUp(const std::atomic<bool>& stop, const Begin& begin = nullptr);

  /// All designs, oldest first, or those of one file: `file` is its name, with or without ".fmp12", or its UUID.
  std::vector<StoredDesign> List(const std::string& file);
  std::optional<StoredDesign> Find(std::int64_t id);

  /// Whether the record `id` is a design that is listed, or will be as far as can be told before it is indexed.
  bool Has(std::int64_t id);

  /// The export verbatim. Empty when the store no longer has it.
  std::string Content(std::int64_t id);

  /// Sets label and note where given; an empty text removes them. They are stored with the record, not in the index.
  /// False when there is no such design.
  bool Describe(std::int64_t id, const std::optional<std::string>& label, const std::optional<std::string>& note);

  /// Calls `found` for every line that contains `text`, in any case, in all designs or in those of one file. Gives up
  /// and returns false soon after `isWanted`, which is asked often, has returned false.
  bool Search(
      const std::string& text, const std::string& file, const std::function<void(const StoredHit&)>& found,
      const std::function<bool()>& isWanted = [] { return true; });

 private:
  struct Origin;
  static std::vector<Origin> Origins(Database& database, const char* sql);
  std::vector<Origin> Seen();
  std::vector<Origin> Present();
  struct Received;
  std::optional<Received> Load(std::int64_t number);
  struct Entry;
  Entry Examine(const Origin& origin, Received& received, const Begin& begin, const std::atomic<bool>& stop);
  void Keep(const Origin& origin, std::int64_t bytes, const Entry& entry);
  void Forget(const std::vector<Origin>& gone);
  std::string TextOf(std::int64_t number);

  Database received_;
  Database index_;
};

}  // namespace service
