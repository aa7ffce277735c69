// A connection to the X server: its atoms, its events, and other programs' windows that are watched. For the thread
// that works on it, except where a method says otherwise.
#pragma once

#include <xcb/xcb.h>

#include <atomic>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

namespace x11 {

/// How long the server may be silent before it counts as gone. Any thread.
std::chrono::milliseconds ServerPatience();
/// The most bytes that are read of one value: several times what people copy, and little enough to fit into memory.
inline constexpr std::size_t kMaxValueBytes = std::size_t{1} << 28;

struct FreeMemory {
  void operator()(void* memory) const { std::free(memory); }
};
/// What the library allocated: a reply or an event.
template <typename T>
using Owned = std::unique_ptr<T, FreeMemory>;

/// The atoms to which the conventions for selections give a meaning.
struct Atoms {
  xcb_atom_t clipboard, clipboardManager;
  xcb_atom_t targets, multiple, timestamp, saveTargets;  // targets of the protocol
  xcb_atom_t utf8String, utf8Mime, text, plainText;      // targets for text
  xcb_atom_t atomPair, incremental, null;                // property types
  xcb_atom_t answer;                                     // the property of our own windows
};

/// What a property holds.
struct Property {
  xcb_atom_t type = XCB_NONE;  ///< XCB_NONE when there is no such property
  std::uint8_t format = 0;     ///< bits of an element
  std::string bytes;
};

class Connection {
 public:
  using Handler = std::function<void(const xcb_generic_event_t&)>;

  /// Takes ownership of what xcb_connect returned, even of a failed connection. `wakeFd`, an eventfd that outlives
  /// this, ends a sleep in WaitUntil.
  Connection(xcb_connection_t* connection, int wakeFd);
  ~Connection();
  Connection(const Connection&) = delete;
  Connection& operator=(const Connection&) = delete;

  /// Fetches the atoms; false when the connection is lost.
  bool Prepare();
  /// `handler` sees every event from here on.
  void SetHandler(Handler handler) { handler_ = std::move(handler); }

  xcb_connection_t* get() const { return connection_; }
  const Atoms& atoms() const { return atoms_; }
  /// The most bytes of a property that one request can carry, a multiple of 4.
  std::size_t MaxPropertyBytes() const { return maxPropertyBytes_; }

  bool IsLost() const { return xcb_connection_has_error(connection_) != 0; }
  /// Ends the connection, so that every wait for the server returns at once. Any thread.
  void Cut();
  /// A number that changes while the connection makes progress. Any thread.
  unsigned Progress() const { return progress_; }

  /// Handles events until `done`. False when `deadline` (SteadyMilliseconds) passes first or the connection is lost.
  bool WaitUntil(const std::function<bool()>& done, std::int64_t deadline);

  /// Whether the thread sleeps in WaitUntil and has handled everything that has come from the server. Any thread.
  bool IsAtRest() const;
  /// Handles everything that the server has sent up to this call.
  void CatchUp();
  /// Handles the events that came with, or before, the last reply.
  void HandleArrivedEvents();

  /// The atoms of `names`, XCB_NONE for invalid ones.
  std::vector<xcb_atom_t> Intern(const std::vector<std::string>& names);
  /// The names of `atoms`, "" for invalid ones.
  std::vector<std::string> NamesOf(const std::vector<xcb_atom_t>& atoms);

  xcb_window_t OwnerOf(xcb_atom_t selection);
  /// Reads a property and deletes it. Returns an empty one when it is larger than kMaxValueBytes, or takes longer than
  /// until `deadline` (SteadyMilliseconds).
  Property Take(xcb_window_t window, xcb_atom_t property, std::int64_t deadline);

  /// Asks for the property and destruction events of another program's window. Each Watch needs one Unwatch.
  void Watch(xcb_window_t window);
  void Unwatch(xcb_window_t window);

 private:
  xcb_connection_t* const connection_;
  const int wakeFd_;
  Handler handler_;
  Atoms atoms_{};
  std::size_t maxPropertyBytes_ = 0;
  std::atomic<unsigned> progress_ = 0;
  std::atomic<bool> asleep_ = false;
  std::unordered_map<std::string, xcb_atom_t> atomsByName_;
  std::unordered_map<xcb_atom_t, std::string> namesByAtom_;
  std::map<xcb_window_t, int> watched_;
};

/// A window that is never shown, on which other programs set properties. Its property events are reported.
class Window {
 public:
  explicit Window(Connection& connection);
  ~Window();
  Window(const Window&) = delete;
  Window& operator=(const Window&) = delete;

  xcb_window_t id() const { return id_; }

 private:
  Connection& connection_;
  const xcb_window_t id_;
};

}  // namespace x11
