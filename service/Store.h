// What the service remembers: the commands, and everything that the plug-in sent.
#pragma once

#include <cstdint>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "CommandTypes.h"
#include "Database.h"

namespace service {

struct Command {
  std::string id;
  std::string type;
  CommandArguments arguments;
};

/// Something received. What name and label hold depends on the kind; docs/bridge-service.md has the list.
struct Record {
  std::string_view kind;  ///< "sign-in", "push", "diagnostic", "ingest", "snapshot" or "upload"
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
  std::string state;  ///< "queued", "delivered", "completed" or "failed"
  std::int64_t secondsInState = 0;
  std::optional<std::string> error;
  std::string queuedAt;
  std::optional<std::string> deliveredAt;
  std::optional<std::string> finishedAt;
  std::optional<std::int64_t> result;  ///< number of the record that holds the result
};

enum class Completion { kAccepted, kUnknown, kNotDelivered, kFinishedOtherwise };

/// Safe on any thread. What an operation has done is on the disk when it returns; nothing is ever forgotten. Operations
/// throw std::runtime_error when the disk fails them.
class Store {
 public:
  /// Opens the store in `folder`, which is created if it is missing. Only one process may have it open.
  explicit Store(const std::string& folder);

  /// Queues a command and returns its new id, 16 hexadecimal digits.
  std::string Enqueue(const std::string& type, const CommandArguments& arguments);

  /// Takes the oldest queued command and marks it delivered: no later call returns it again.
  std::optional<Command> Deliver();

  /// Ends a delivered command as `state` and finds its result among the records. Saying the same twice is accepted.
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

 private:
  std::mutex mutex_;
  Database database_;
};

}  // namespace service
