// What the service remembers: the commands, and everything that the plug-in sent.
#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <mutex>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "Change.h"
#include "CommandTypes.h"
#include "Cryptography.h"
#include "Database.h"
#include "FolderLock.h"
#include "clips/Clip.h"

namespace service {

struct Command {
  std::string id;
  std::string type;
  CommandArguments arguments;
};

/// Something received. What name and label hold depends on the kind; docs/bridge-service.md has the list.
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

/// How long records and commands are kept. Without days nothing is deleted.
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

/// A browser that shows the console. The hash is that of a secret which only the browser has.
struct ConsoleSession {
  ContentHash hash{};
  std::int64_t ends = 0;  ///< milliseconds since 1970
};

/// The database file was removed or replaced while the service runs: nothing would survive it.
class StoreGone : public std::runtime_error {
  using std::runtime_error::runtime_error;
};

/// Safe on any thread. What an operation has done is on the disk when it returns; only Prune and the deletions forget.
/// Operations throw std::runtime_error when the disk fails them, StoreGone among these. None waits long for another,
/// whatever is pruned.
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

  /// Has `changed` called after each change, on the thread that made it. Call it before others use the store.
  void Observe(std::function<void(Change)> changed) { changed_ = std::move(changed); }

  /// Queues a command and returns its new id, 16 hexadecimal digits. It expires when nobody has asked for it within
  /// `queuedFor`, or within the time that its type has. `agent` is the AI assistant that wants it, if any.
  std::string Enqueue(const CommandType& type, const CommandArguments& arguments,
                      std::optional<std::chrono::seconds> queuedFor = {}, const std::string& agent = "");

  /// The command as it was queued, so that it can be queued again; nothing when there is no such command.
  std::optional<Command> Sent(const std::string& id);

  /// Takes the oldest queued command that can be delivered now and marks it delivered: no later call returns it again.
  /// A command whose result could be confused with that of one delivered before waits until that one is finished, or
  /// has had as long as its type takes.
  std::optional<Command> Deliver();

  /// Ends the queued commands whose time is over. Every other operation on commands does so too.
  void Expire();

  /// Ends a queued command.
  Cancellation Cancel(const std::string& id);

  /// Ends a command that is queued or delivered, for a person who no longer waits for it. The plug-in may still carry
  /// out what was delivered. The command stays cancelled then, but what the plug-in sends becomes its result and is not
  /// taken for that of another.
  Cancellation Forget(const std::string& id);

  /// Ends a delivered command as `state`, and finds the result of a completed one among the records since its delivery.
  /// Saying the same twice is accepted.
  Completion Complete(const std::string& id, const std::string& state, const std::optional<std::string>& error);

  /// Keeps a record and returns its number. A diagnostic joins the schema request that was delivered last.
  std::int64_t Add(const Record& record);

  /// The newest commands, at most `limit`, oldest first; all states when `state` is empty.
  std::vector<CommandSummary> Commands(const std::string& state, std::int64_t limit);
  std::optional<CommandSummary> FindCommand(const std::string& id);

  /// The newest records, at most `limit`, oldest first; those of one kind or one command when given.
  std::vector<RecordSummary> Records(const std::optional<std::string>& kind, const std::optional<std::string>& command,
                                     std::int64_t limit);
  std::optional<RecordSummary> FindRecord(std::int64_t number);
  std::string Content(std::int64_t number);

  /// Forgets the records and finished commands that are older than `age`, but keeps the newest `keep` records of each
  /// kind and name, clips with tags and clips that a person added. Gives the space back to the disk.
  Pruned Prune(std::chrono::seconds age, std::int64_t keep);

  /// Deletes one record. The command whose result it was has none any longer. False when there is no such record.
  bool DeleteRecord(std::int64_t number);

  /// The uploads from the record `number` on that have the same content, oldest first.
  std::vector<std::int64_t> Repetitions(std::int64_t number);

  /// Deletes a finished command and its diagnostics; its result stays as a record that belongs to no command. A
  /// forgotten command must first have had as long as its type takes, because the answer to it would look like that to
  /// the next.
  Deletion DeleteCommand(const std::string& id);

  Totals Count();
  std::vector<KindSize> Sizes();

  Retention GetRetention();
  void SetRetention(const Retention& retention);

  /// The clips that `filter` finds, at most `limit`. A clip lives as long as its content; its tags go with it.
  ClipList Clips(const ClipFilter& filter, std::int64_t limit);
  std::optional<Clip> FindClip(std::int64_t id);
  std::string ClipContent(std::int64_t id);

  /// The clip that a record brought; 0 when it brought none.
  std::int64_t ClipOf(std::int64_t record);

  /// False when there is no such clip.
  bool TagClip(std::int64_t id, const std::vector<std::string>& tags);

  /// Deletes a clip with the records that brought it. False when there is no such clip.
  bool DeleteClip(std::int64_t id);

  /// The sessions of the console that have not ended, oldest first.
  std::vector<ConsoleSession> Sessions();

  /// Keeps a session, and of all of them only the newest `most`.
  void KeepSession(const ConsoleSession& session, std::size_t most);

  /// The present time by the store's clock.
  std::int64_t Now() const { return clock_(); }

 private:
  void ExpireCommands();
  Cancellation Withdraw(const std::string& id, bool alsoDelivered);
  void ReportDeletion();
  void GiveSpaceBack();
  bool DropContents();  // deletes a step's worth of what no record has; false when there is nothing
  bool Shrink();        // makes the file a step shorter; false when it has no unused pages

  std::mutex mutex_;
  Clock clock_;
  std::string path_;
  std::function<void(Change)> changed_ = [](Change) {};
  FolderLock lock_;
  Database database_;
  std::uint64_t inode_ = 0;
};

}  // namespace service
