// What the service stores: the commands, and everything that the plug-in sent.
#pragma once

#include <atomic>
#include <chrono>
#include <cstdint>
#include <functional>
#include <mutex>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "clips/Clip.h"
#include "protocol/CommandTypes.h"
#include "store/Database.h"
#include "store/FolderLock.h"
#include "store/Topic.h"
#include "system/Cryptography.h"

namespace service {

struct Command {
  std::string id;
  std::string type;
  CommandArguments arguments;
};

/// Something received. The meaning of name and label depends on the kind; docs/bridge-service.md has the list.
struct Record {
  std::string_view kind;  ///< "sign-in", "push", "diagnostic", "ingest", "snapshot", "upload" or "clip"
  std::string_view name;
  std::optional<std::string_view> label;
  std::string_view content;
};

struct RecordSummary {
  std::int64_t number = 0;
  std::string kind;
  std::string name;
  std::optional<std::string> label;
  std::string receivedAt;              ///< this and all other times: UTC, ISO 8601 with milliseconds
  std::optional<std::string> command;  ///< id of the command that it belongs to
  std::int64_t bytes = 0;
};

struct CommandSummary {
  std::string id;
  std::string type;
  std::optional<std::string> fileName;
  std::optional<std::string> xmlType;
  std::string agent;  ///< AI assistant that queued it; empty: none
  std::string state;  ///< "queued", "delivered", "completed", "failed", "cancelled" or "expired"
  std::int64_t secondsInState = 0;
  std::optional<std::string> error;
  std::string queuedAt;
  std::optional<std::string> expiresAt;
  std::optional<std::string> deliveredAt;
  std::optional<std::string> finishedAt;
  std::optional<std::int64_t> result;  ///< number of the record that holds the result
};

enum class Completion { kAccepted, kUnknown, kNotDelivered, kFinishedOtherwise };
enum class Cancellation { kCancelled, kUnknown, kOtherState };

struct Pruned {
  std::int64_t commands = 0;
  std::int64_t records = 0;
};

/// How long records and commands are kept. Without `days` nothing is deleted.
struct Retention {
  std::optional<std::int64_t> days;
  std::optional<std::int64_t> keep;  ///< the newest of each kind and name are never deleted
};

enum class Deletion { kDeleted, kUnknown, kNotFinished, kAnswerMayCome };

struct KindSize {
  std::string kind;  ///< of records
  std::int64_t count = 0;
  std::int64_t bytes = 0;  ///< identical contents counted once
};

struct Totals {
  std::int64_t queued = 0;
  std::int64_t delivered = 0;
  std::int64_t commands = 0;
  std::int64_t records = 0;
  std::int64_t bytes = 0;  ///< of the records' contents, each counted once
};

/// A browser in which the console is open. The hash is that of a secret which only the browser has.
struct ConsoleSession {
  ContentHash hash{};
  std::int64_t ends = 0;  ///< milliseconds since 1970
};

/// The database file was removed or replaced while the service runs, so nothing more would be kept.
class StoreGone : public std::runtime_error {
  using std::runtime_error::runtime_error;
};

/// Safe on any thread. When an operation returns, its effect is on disk; data is deleted only by Prune and the Delete
/// operations. Operations throw std::runtime_error when the disk fails, for example StoreGone. None waits long for
/// another, even while much is pruned.
class Store {
 public:
  /// Milliseconds since 1970.
  using Clock = std::function<std::int64_t()>;
  static std::int64_t SystemTime();

  /// The database in `folder`. Any program of the same user may read it.
  static std::string PathIn(const std::string& folder);
  std::string Folder() const;

  /// Throws StoreGone when the database's file is no longer the one that was opened.
  void CheckFile() const;

  /// Opens the store in `folder`, which is created for its owner alone if it is missing. Only one process may have it
  /// open. Refuses a folder or database that other users can write to.
  explicit Store(const std::string& folder, Clock clock = SystemTime);

  /// Sets `changed` to be called after each change, on the thread that made it. To be called before the store is
  /// shared.
  void Observe(std::function<void(Topic)> changed) { changed_ = std::move(changed); }

  /// Queues a command and returns its new id, 16 hexadecimal digits. It expires if no plug-in fetches it within
  /// `queuedFor`, by default the time of its type. `agent` is the AI assistant that queues it, if any.
  std::string Enqueue(const CommandType& type, const CommandArguments& arguments,
                      std::optional<std::chrono::seconds> queuedFor = {}, const std::string& agent = "");

  /// The command as it was queued, so that it can be queued again; nothing when there is no such command.
  std::optional<Command> QueuedForm(const std::string& id);

  /// Returns the oldest queued command that can be delivered now and marks it delivered, so that no later call returns
  /// it again. If its result could be confused with that of a delivered command, a command waits until that one is
  /// finished or has had as long as its type takes.
  std::optional<Command> Deliver();

  /// Ends the queued commands that have expired. Every other operation on commands does so, too.
  void Expire();

  /// Ends a queued command.
  Cancellation Cancel(const std::string& id);

  /// Ends a queued or delivered command for a person who no longer waits for it. The plug-in may still carry out a
  /// delivered one. The command then stays cancelled, but what the plug-in sends becomes its result, so that it is not
  /// taken for the result of another command.
  Cancellation Forget(const std::string& id);

  /// Ends a delivered command as `state`, "completed" or "failed", and finds the result of a completed one among the
  /// records since its delivery. Repeating the same state is accepted.
  Completion Complete(const std::string& id, const std::string& state, const std::optional<std::string>& error);

  /// Stores a record and returns its number. A diagnostic is added to the schema request that was delivered last.
  std::int64_t Add(const Record& record);

  /// The newest commands, at most `limit`, oldest first; all states when `state` is empty.
  std::vector<CommandSummary> Commands(const std::string& state, std::int64_t limit);
  std::optional<CommandSummary> FindCommand(const std::string& id);

  /// The newest records, at most `limit`, oldest first; those of one kind or one command when given.
  std::vector<RecordSummary> Records(const std::optional<std::string>& kind, const std::optional<std::string>& command,
                                     std::int64_t limit);
  std::optional<RecordSummary> FindRecord(std::int64_t number);
  std::string Content(std::int64_t number);

  /// Deletes the records and finished commands that are older than `age`, but keeps the newest `keep` records of each
  /// kind and name, clips with tags, clips that a person added, and the commands that DeleteCommand would not delete.
  /// Returns the freed space to the disk.
  Pruned Prune(std::chrono::seconds age, std::int64_t keep);

  /// Returns the space of what was deleted to the disk, in small steps. Deletions do this, too; this also continues the
  /// work of a process that ended meanwhile.
  void GiveSpaceBack();

  /// Ends all returning of space to the disk, now and later, so that the process can end soon.
  void EndUpkeep() { isEnding_ = true; }

  /// Deletes one record. A command whose result it was no longer has one. False when there is no such record.
  bool DeleteRecord(std::int64_t number);

  /// The uploads from the record `number` on that have the same content, oldest first.
  std::vector<std::int64_t> Repetitions(std::int64_t number);

  /// Deletes a finished command and its diagnostics; its result stays as a record that belongs to no command. A
  /// forgotten command stays for a minute after its delivery, because a late answer to it would be taken for the
  /// answer to the next command.
  Deletion DeleteCommand(const std::string& id);

  Totals Count();
  std::vector<KindSize> Sizes();

  Retention GetRetention();
  void SetRetention(const Retention& retention);

  /// The clips that match `filter`, at most `limit`. A clip and its tags exist as long as its content.
  ClipList Clips(const ClipFilter& filter, std::int64_t limit);
  std::optional<Clip> FindClip(std::int64_t id);
  std::string ClipContent(std::int64_t id);

  /// The id of the clip that a record contains; 0 when it contains none.
  std::int64_t ClipOf(std::int64_t record);

  /// False when there is no such clip.
  bool TagClip(std::int64_t id, const std::vector<std::string>& tags);

  /// Deletes a clip and the records that contain it. False when there is no such clip.
  bool DeleteClip(std::int64_t id);

  /// The sessions of the console that have not ended, oldest first.
  std::vector<ConsoleSession> Sessions();

  /// Stores a session, and deletes all but the newest `most`.
  void KeepSession(const ConsoleSession& session, std::size_t most);

  /// Whether something was written since the last call that was not written through this object: the label of a design.
  bool OthersHaveWritten();

  /// The current time of the store's clock.
  std::int64_t Now() const { return clock_(); }

 private:
  void ExpireCommands();
  Cancellation Withdraw(const std::string& id, bool alsoDelivered);
  void ReportDeletion();
  bool DropContents();  // deletes one step of contents without a record; false when there are none
  bool Shrink();        // makes the file one step shorter; false when it has no unused pages

  std::mutex mutex_;
  Clock clock_;
  std::string path_;
  std::function<void(Topic)> changed_ = [](Topic) {};
  FolderLock lock_;
  Database database_;
  std::uint64_t inode_ = 0;
  std::atomic<bool> isEnding_ = false;
  std::int64_t othersWrites_ = 0;  // changes when they do
};

}  // namespace service
