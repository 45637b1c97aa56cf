#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>

#include <QByteArray>
#include <QDateTime>
#include <QString>
#include <QStringList>

#include "platform/Prompts.h"

class QImage;
class QTimer;
class QWidget;

namespace zth::platform {
class Machine;   // Machine.h
class PageHost;  // Pages.h
}  // namespace zth::platform

/// The seams to everything outside the program. The rooms above open boxes and file dialogs, read clocks, load
/// libraries and end the process only through these; tests pass scripted doubles.
namespace zth::platform {

/// Per-user settings: texts by key, in the section "Settings".
class Settings {
 public:
  virtual ~Settings() = default;
  /// The stored text, or `fallback` if the key is missing.
  virtual QString Get(const QString& key, const QString& fallback) const = 0;
  /// Stores immediately.
  virtual void Put(const QString& key, const QString& text) = 0;
};

/// The system clipboard.
class Clipboard {
 public:
  virtual ~Clipboard() = default;
  virtual void PutText(const QString& text) = 0;
  virtual void PutPicture(const QImage& picture) = 0;
};

/// The desktop's shell.
class Shell {
 public:
  virtual ~Shell() = default;
  /// Opens an address in the user's browser; false if the desktop cannot.
  virtual bool Open(const QString& address) = 0;
  /// Plays the desktop's alert sound, as the user has set it up.
  virtual void Beep() = 0;
};

class Clock {
 public:
  virtual ~Clock() = default;
  /// Seconds of a monotonic clock with an unspecified start.
  virtual double Now() const = 0;
  /// The wall clock, for display only.
  virtual QDateTime WallTime() const = 0;
  /// Blocks for `milliseconds` without handling events. Returns at once for 0 or less.
  virtual void WaitMs(float milliseconds) = 0;
  /// Registers a timer that a test may drive; the real clock leaves it to the event loop.
  virtual void Adopt(QTimer& timer) = 0;
};

class Events {
 public:
  virtual ~Events() = default;
  /// Handles all pending events.
  virtual void Pump() = 0;
  /// Handles paint events, but no user input.
  virtual void PumpPaint() = 0;
};

/// A shared library, loaded until the process ends.
class Library {
 public:
  virtual ~Library() = default;
  /// The address of an exported symbol, or null if there is none.
  virtual void* Symbol(const char* name) const = 0;
};

struct LoadedLibrary {
  std::shared_ptr<Library> library;  ///< null if loading failed
  QString error;                     ///< the loader's own words; contains "File not found" when there is no such file
  QString file = {};  ///< the file that was loaded, with its path; otherwise the name that was looked for
};

class Libraries {
 public:
  virtual ~Libraries() = default;
  /// Loads a library by its bare name ("smbus") from the executable's folder, or else from the loader's search path.
  virtual LoadedLibrary Load(const QString& name) = 0;
  /// Where Load looks, in its order: folders, and a description of what the system's loader searches as well.
  virtual QStringList Places() const = 0;
  /// Whether the program brings the libraries of a board ("simulated") and does not use them yet.
  virtual bool HasBoard(const QString& board) const = 0;
  /// The names of all boards that the program brings.
  virtual QStringList Boards() const = 0;
  /// From now on Load uses the libraries of that board and no others. An absolute path is any folder of libraries.
  virtual void TakeBoard(const QString& board) = 0;
};

/// The identity of a file, independent of its name, from the platform's file numbers, and its length.
struct FileState {
  std::uint64_t device = 0;
  std::uint64_t number = 0;
  std::int64_t size = 0;

  bool SameFile(const FileState& other) const { return device == other.device && number == other.number; }
};

/// The result of an append.
struct FileAppend {
  bool opened = false;
  FileState before;          ///< the file before the append
  std::int64_t written = 0;  ///< bytes actually written; fewer than requested if the disk is full
};

/// The user's files. No file stays open after a call. Only regular files are touched, so that no call can hang.
class Files {
 public:
  virtual ~Files() = default;
  /// The state of the file with this name; nothing if there is none.
  virtual std::optional<FileState> Look(const QString& path) = 0;
  /// Opens the file, appends all bytes in one write and closes it. The file must be `seen` (it may have grown), or a
  /// new one if nothing was seen. Otherwise nothing is written, and `opened` is false.
  virtual FileAppend Append(const QString& path, const std::optional<FileState>& seen, const QByteArray& bytes) = 0;
  /// Truncates the file to `size` bytes. False on failure, or if the file is not `seen` with its length then.
  virtual bool Cut(const QString& path, const FileState& seen, std::int64_t size) = 0;
  /// The root of the volume that contains the path, of which only the beginning need exist; empty if unknown.
  virtual QString VolumeOf(const QString& path) = 0;
  /// Replaces a file atomically: writes a temporary file, flushes and renames it, so that either the old or the new
  /// file is complete. False on failure; the old file is then unchanged.
  virtual bool Replace(const QString& path, const QByteArray& bytes) = 0;
  /// The file's first `limit` bytes at most; nothing if it cannot be opened.
  virtual std::optional<QByteArray> Read(const QString& path, std::int64_t limit) = 0;
  /// Bytes of the file from an offset on, fewer at its end; nothing if it cannot be opened.
  virtual std::optional<QByteArray> ReadAt(const QString& path, std::int64_t from, std::int64_t count) = 0;
  virtual void Remove(const QString& path) = 0;
  /// The names of the regular files in a folder, without it, sorted; none if there is no such folder.
  virtual QStringList List(const QString& folder) = 0;
  /// Makes a folder and those above it if there is none. False if that fails.
  virtual bool MakeFolder(const QString& folder) = 0;
  /// Claims a file name for this process, for as long as the result lives; null if another process has it. The claim of
  /// a process that was killed does not count.
  virtual std::shared_ptr<void> Claim(const QString& path) = 0;
};

/// What the program does when it is asked from outside to end. Both run on the user-interface thread, in the next turn
/// of the running event loop, including a modal dialog's.
struct EndOrders {
  std::function<void()> save;  ///< the user's session is about to end, but may still be kept
  std::function<void()> end;   ///< a signal (SIGTERM, SIGHUP, SIGINT), or the session ends now
};

class Process {
 public:
  virtual ~Process() = default;
  /// Sets the orders to run from now on. If `end` returns, it had nothing to do, and the default handling continues.
  virtual void OnEndOrders(EndOrders orders) = 0;
  /// Ends the process. Does not return: the tests' double throws ProcessEnded.
  [[noreturn]] virtual void End(int status) = 0;
  /// The folder of the executable, without a trailing separator.
  virtual QString Folder() const = 0;
  /// The user's folder for what the program itself keeps from one start to the next, without a trailing separator; made
  /// if necessary. Empty if it cannot be made.
  virtual QString StateFolder() const = 0;
  /// An environment variable that names a file or a number; empty if it is not set.
  virtual QString Variable(const char* name) const = 0;
  /// Sets it for the libraries that are loaded from now on.
  virtual void SetVariable(const char* name, const QString& text) = 0;
};

/// Thrown by a Process that cannot really end. Guarded() in Guard.h catches it before it reaches the event loop.
struct ProcessEnded {
  int status = 0;
};

/// All services, passed to whoever needs one. Their owner outlives all users.
struct Services {
  Prompts& prompts;
  FileDialogs& fileDialogs;
  Settings& settings;
  Shell& shell;
  Clock& clock;
  Events& events;
  Libraries& libraries;
  Files& files;
  Clipboard& clipboard;
  Process& process;
  // Null in a program that needs them for nothing.
  Machine* machine = nullptr;
  PageHost* pageHost = nullptr;
};

}  // namespace zth::platform
