// The system pasteboard: the seam below the Clipboard operations. FileMaker's main thread only.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

/// The type of the general view's text.
inline constexpr char kPlainTextType[] = "public.utf8-plain-text";

/// One operation's access, created at its start and destroyed at its end (on macOS it is also the operation's
/// autorelease pool). Two views show the same pasteboard: the older one has items with flavours, the general one has
/// types. Type names and texts are UTF-8; data is raw bytes. Methods that return bool return false on failure and then
/// leave out-parameters unchanged.
class Pasteboard {
 public:
  /// The seam itself, defined once per system; never null. Touches the pasteboard only when a method is called.
  static std::unique_ptr<Pasteboard> Open();
  virtual ~Pasteboard() = default;

  /// A number that differs if another program or this one has written since the last call. Only equality has a meaning.
  /// Nothing where the system does not report changes. Reads no data and waits for no other program.
  virtual std::optional<std::uint64_t> ChangeCount() = 0;

  // The older view, which only macOS has; elsewhere these are not overridden. The others are called only after
  // OpenItems has succeeded.

  /// False where the system does not have this view, or refuses it.
  virtual bool OpenItems() { return false; }
  virtual bool ClearItems() { return false; }
  /// Puts a flavour into the item with identifier 1.
  virtual bool PutFlavor(const std::string& /*type*/, const std::string& /*bytes*/) { return false; }
  /// Exchanges changes with the other programs.
  virtual void SynchronizeItems() {}
  /// The number of items; 0 also when the system does not report it.
  virtual std::size_t ItemCount() { return 0; }
  /// `item` counts from 1.
  virtual bool CopyFlavor(std::size_t /*item*/, const std::string& /*type*/, std::string& /*bytes*/) { return false; }

  // The general view, whose text has the type kPlainTextType.

  /// Empties the pasteboard and announces the types whose data will follow: plain text, if `text`, then `types`.
  virtual void DeclareTypes(bool text, const std::vector<std::string>& types) = 0;
  virtual bool SetData(const std::string& type, const std::string& bytes) = 0;
  virtual bool SetString(const std::string& text) = 0;
  /// The type among `candidates` that the pasteboard prefers; "" when it has none of them.
  virtual std::string AvailableType(const std::vector<std::string>& candidates) = 0;
  virtual bool DataForType(const std::string& type, std::string& bytes) = 0;
  /// "" when there is no text.
  virtual std::string String() = 0;
  /// The names of all types, in the pasteboard's order.
  virtual std::vector<std::string> Types() = 0;
};
