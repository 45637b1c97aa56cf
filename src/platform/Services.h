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

/// The seams to everything outside the program. Nothing above this room opens a box or a file dialog, reads a clock,
/// loads a library, or ends the process but through one of these; tests hand in scripted doubles.
namespace zth::platform {

/// Per-user settings: texts under a key, in the section "Settings".
class Settings {
 public:
  virtual ~Settings() = default;
  /// The stored text, or `fallback` when the key is not there.
  virtual QString Get(const QString& key, const QString& fallback) const = 0;
  /// Stores at once.
  virtual void Put(const QString& key, const QString& text) = 0;
};

/// What the user pastes elsewhere.
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
  /// Opens an address in the user's browser; false when the desktop has no answer.
  virtual bool Open(const QString& address) = 0;
  /// Sounds the desktop's alert, in whatever way the user has set that up.
  virtual void Beep() = 0;
};

class Clock {
 public:
  virtual ~Clock() = default;
  /// Seconds by a monotonic clock of unspecified start.
  virtual double Now() const = 0;
  /// The wall clock, for showing only.
  virtual QDateTime WallTime() const = 0;
  /// Blocks for so many milliseconds; no event is handled meanwhile. 0 or below returns at once.
  virtual void WaitMs(float milliseconds) = 0;
  /// Told of a timer that a test may want to drive; the real clock leaves it to the event loop.
  virtual void Adopt(QTimer& timer) = 0;
};

class Events {
 public:
  virtual ~Events() = default;
  /// Lets all pending events run.
  virtual void Pump() = 0;
  /// Lets windows paint, and nothing that the user does through.
  virtual void PumpPaint() = 0;
};

/// One shared library, loaded for the life of the process.
class Library {
 public:
  virtual ~Library() = default;
  /// The address of an exported symbol, null when it is not there.
  virtual void* Symbol(const char* name) const = 0;
};

struct LoadedLibrary {
  std::shared_ptr<Library> library;  ///< null when loading failed
  QString error;      ///< why, with the loader's own words; contains "File not found" when no such file is in reach
  QString file = {};  ///< what was loaded, with its path; or else the name that was looked for
};

class Libraries {
 public:
  virtual ~Libraries() = default;
  /// Loads a library by its bare name ("smbus"): from the executable's own folder, else by the loader's search path.
  virtual LoadedLibrary Load(const QString& name) = 0;
  /// Where Load looks, in its order: folders, and words for what the system's loader searches besides.
  virtual QStringList Places() const = 0;
  /// Whether the libraries of a board ("simulated") have come with the program and have not been taken yet.
  virtual bool HasBoard(const QString& board) const = 0;
  /// From now on Load takes the libraries of that board and no others.
  virtual void TakeBoard(const QString& board) = 0;
};

/// A file as it stands: which one it is, whatever its name, by the platform's own numbers, and how long it is.
struct FileState {
  std::uint64_t device = 0;
  std::uint64_t number = 0;
  std::int64_t size = 0;

  bool SameFile(const FileState& other) const { return device == other.device && number == other.number; }
};

/// What an append has left in the file.
struct FileAppend {
  bool opened = false;
  FileState before;          ///< the file, with its size before it
  std::int64_t written = 0;  ///< bytes of it that stand in the file; fewer than were handed in on a full disk
};

/// The user's files. None stays open behind a call; only regular files are touched, so that none of them can hang.
class Files {
 public:
  virtual ~Files() = default;
  /// The file of that name, nothing when there is none.
  virtual std::optional<FileState> Look(const QString& path) = 0;
  /// Opens the file for appending, hands it all bytes in one write and closes it. It is to be the file that was `seen`,
  /// longer by now or not, or a new one when none was; in any other nothing is written, and it counts as not opened.
  virtual FileAppend Append(const QString& path, const std::optional<FileState>& seen, const QByteArray& bytes) = 0;
  /// Cuts the file to `size` bytes. False when that failed, or when it is not the file `seen`, as long as it was then.
  virtual bool Cut(const QString& path, const FileState& seen, std::int64_t size) = 0;
  /// The root of the volume that the path lies on, however much of the path there is; empty when nobody knows.
  virtual QString VolumeOf(const QString& path) = 0;
  /// Puts a file of these bytes in the place of what stands there: written aside, flushed and renamed, so that either
  /// the old one or the new one is there whole. False when it could not be done; the old one is as it was.
  virtual bool Replace(const QString& path, const QByteArray& bytes) = 0;
  /// The file's bytes, at most the first `limit` of them; nothing when it cannot be opened.
  virtual std::optional<QByteArray> Read(const QString& path, std::int64_t limit) = 0;
  /// So many of its bytes from a place on, fewer where it ends before; nothing when it cannot be opened.
  virtual std::optional<QByteArray> ReadAt(const QString& path, std::int64_t from, std::int64_t count) = 0;
};

/// What the program does when it is told from outside to end. Both run on the user-interface thread, in the next turn
/// of whichever event loop runs then, that of a modal dialog too.
struct EndOrders {
  std::function<void()> save;  ///< the user's session is about to end, which may yet be called off
  std::function<void()> end;   ///< a signal (SIGTERM, SIGHUP, SIGINT), or the session ends now
};

class Process {
 public:
  virtual ~Process() = default;
  /// Hands in what is to be done from now on. An `end` that returns has found nothing to do: things take their course.
  virtual void OnEndOrders(EndOrders orders) = 0;
  /// Ends the process. Does not return: the double of the tests leaves by throwing ProcessEnded.
  [[noreturn]] virtual void End(int status) = 0;
  /// The folder of the executable, without a separator behind it.
  virtual QString Folder() const = 0;
};

/// Thrown by a Process that cannot really end. Guarded() in Guard.h stops it before it would reach the event loop.
struct ProcessEnded {
  int status = 0;
};

/// All of them, handed to whoever needs one. Whoever made the services outlives all users.
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
};

}  // namespace zth::platform
