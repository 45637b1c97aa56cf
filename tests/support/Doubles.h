#pragma once

#include <functional>
#include <map>
#include <vector>

#include <QDateTime>
#include <QImage>
#include <QPointer>
#include <QTimer>
#include <gtest/gtest.h>

#include "platform/DesktopParts.h"
#include "platform/Services.h"
#include "tests/support/FakeBoard.h"
#include "tests/support/Scripted.h"

/// Doubles of the seams. Those that stand in for the user are in Scripted.h.
namespace zth::testing {

class MemorySettings final : public platform::Settings {
 public:
  QString Get(const QString& key, const QString& fallback) const override {
    const auto value = values.find(key);
    return value == values.end() ? fallback : value->second;
  }
  void Put(const QString& key, const QString& text) override { values[key] = text; }

  std::map<QString, QString> values;
};

class MemoryClipboard final : public platform::Clipboard {
 public:
  void PutText(const QString& put) override { text = put; }
  void PutPicture(const QImage& put) override { picture = put; }

  QString text;
  QImage picture;
};

class RecordingShell final : public platform::Shell {
 public:
  bool Open(const QString& address) override { return opened.push_back(address), true; }

  void Beep() override { ++beeps; }

  std::vector<QString> opened;
  int beeps = 0;
};

/// Time that advances only when told to. Adopted timers fire as it passes, in the order of their times. When the event
/// loop fires them itself, that is ignored.
class VirtualClock final : public platform::Clock {
 public:
  double Now() const override;
  QDateTime WallTime() const override;
  void WaitMs(float milliseconds) override;
  void Adopt(QTimer& timer) override;

  /// Lets that much time pass, with the timers firing.
  void Advance(int milliseconds);

  /// Sets the wall clock, which continues from there.
  void SetWallTime(const QDateTime& time) { wallOffsetMs_ = WallTime().msecsTo(time) + wallOffsetMs_; }

  double waitedMs = 0;  ///< the total time of all WaitMs calls
  std::int64_t lookUs = 1;

 private:
  struct Adopted {
    QPointer<QTimer> timer;
    std::int64_t nextUs = -1;
  };
  void Refresh();

  mutable std::int64_t nowUs_ = 1'000'000'000;
  std::int64_t wallOffsetMs_ = 0;
  std::vector<Adopted> timers_;
};

class QuietEvents final : public platform::Events {
 public:
  void Pump() override {
    if (onPump) onPump();
  }
  void PumpPaint() override {
    ++paints;
    if (onPaint) onPaint();
  }

  int paints = 0;
  std::function<void()> onPump;   ///< what the events do
  std::function<void()> onPaint;  ///< what timers and the window system do while windows are painted
};

class FakeLibraries final : public platform::Libraries {
 public:
  explicit FakeLibraries(FakeBoard& board) : board_(board) {}
  platform::LoadedLibrary Load(const QString& name) override { return load ? load(name) : board_.Load(name); }

  QStringList Places() const override { return {"/opt/zth (the program's folder)", "the system's folders"}; }
  bool HasBoard(const QString& board) const override { return boards.contains(board) && board != taken; }
  QStringList Boards() const override { return boards; }
  void TakeBoard(const QString& board) override {
    taken = board;
    if (onTake) onTake();
  }

  QStringList boards;            ///< the boards that come with the program
  QString taken;                 ///< the board taken last
  std::function<void()> onTake;  ///< changes which libraries can be loaded from then on
  std::function<platform::LoadedLibrary(const QString& name)> load;  ///< libraries other than those of the fake board

 private:
  FakeBoard& board_;
};

/// Real files, with write failures on demand.
class FailingFiles final : public platform::Files {
 public:
  std::optional<platform::FileState> Look(const QString& path) override;
  platform::FileAppend Append(const QString& path, const std::optional<platform::FileState>& seen,
                              const QByteArray& bytes) override;
  bool Cut(const QString& path, const platform::FileState& seen, std::int64_t size) override;
  QString VolumeOf(const QString& path) override { return volumeOf ? volumeOf(path) : real_.VolumeOf(path); }
  bool Replace(const QString& path, const QByteArray& bytes) override;
  std::optional<QByteArray> Read(const QString& path, std::int64_t limit) override { return real_.Read(path, limit); }
  std::optional<QByteArray> ReadAt(const QString& path, std::int64_t from, std::int64_t count) override {
    if (unreadable) return std::nullopt;
    return real_.ReadAt(path, from, count);
  }

  void Remove(const QString& path) override { real_.Remove(path); }
  QStringList List(const QString& folder) override { return real_.List(folder); }
  bool MakeFolder(const QString& folder) override { return !locked && real_.MakeFolder(folder); }
  std::shared_ptr<void> Claim(const QString& path) override { return real_.Claim(path); }

  bool locked = false;                ///< no file opens for writing
  std::optional<std::int64_t> space;  ///< free bytes on the disk
  bool cutFails = false;
  bool unreadable = false;            ///< like a file that may be appended to but not read
  std::function<void()> beforeWrite;  ///< what others do between a check of a file and the next write
  std::function<QString(const QString& path)> volumeOf;
  std::uint64_t devices = 0;  ///< added to each file's device number: another volume is mounted there
  int appends = 0;

 private:
  platform::DesktopFiles real_;
};

/// Records the end and throws an exception.
class RecordedProcess final : public platform::Process {
 public:
  [[noreturn]] void End(int status) override {
    ends.push_back(status);
    if (onEnd) onEnd();
    throw platform::ProcessEnded{status};
  }
  void OnEndOrders(platform::EndOrders given) override { orders = std::move(given); }
  QString Folder() const override { return folder; }
  QString StateFolder() const override { return stateFolder; }
  QString Variable(const char* name) const override {
    const auto found = variables.find(name);
    return found == variables.end() ? QString() : found->second;
  }
  void SetVariable(const char* name, const QString& text) override { variables[name] = text; }

  platform::EndOrders orders;  ///< what the program does when told to end
  std::vector<int> ends;
  std::function<void()> onEnd;  ///< called at that moment, after which a real process does nothing more
  QString folder = "/opt/zth";
  QString stateFolder;                       ///< by default there is none
  std::map<std::string, QString> variables;  ///< of the environment
};

}  // namespace zth::testing
