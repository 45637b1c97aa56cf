#pragma once

#include <QString>

#include "platform/Services.h"

/// The real implementation of each seam. Only DesktopServices, ConsoleServices and this room's tests use these classes.
namespace zth::platform {

class DesktopPrompts final : public Prompts {
 public:
  BoxAnswer Ask(const BoxQuestion& question) override;
  int Choose(const ChoiceQuestion& question) override;
};

class DesktopFileDialogs final : public FileDialogs {
 public:
  /// Stores the last used folder in the settings.
  explicit DesktopFileDialogs(Settings& settings) : settings_(settings) {}
  QString Ask(const FileQuestion& question, QWidget* parent) override;

 private:
  QString StartFolder(const QString& wanted) const;

  Settings& settings_;
};

/// Converts "Log Files (*.csv)|*.csv" to Qt's form, "Log Files (*.csv)", with entries joined by ";;".
QString QtFilter(const QString& filter);

/// The extension of a filter's first pattern, without the point ("csv"); empty if the pattern has none.
QString FilterExtension(const QString& filter);

/// An INI file with one section, "Settings". Keys that the program does not know are kept. If the path is not a regular
/// file, it is not touched: nothing is stored, and every key returns its fallback.
class IniSettings final : public Settings {
 public:
  explicit IniSettings(QString file) : file_(std::move(file)) {}

  /// The file in the user's configuration folder, named after the program.
  static QString UserFile();

  QString Get(const QString& key, const QString& fallback) const override;
  void Put(const QString& key, const QString& text) override;

 private:
  QString file_;
};

class DesktopClipboard final : public Clipboard {
 public:
  void PutText(const QString& text) override;
  void PutPicture(const QImage& picture) override;
};

class DesktopShell final : public Shell {
 public:
  bool Open(const QString& address) override;
  void Beep() override;
};

class DesktopClock final : public Clock {
 public:
  double Now() const override;
  QDateTime WallTime() const override;
  void WaitMs(float milliseconds) override;
  void Adopt(QTimer& timer) override;
};

class DesktopEvents final : public Events {
 public:
  void Pump() override;
  void PumpPaint() override;
};

class DesktopLibraries final : public Libraries {
 public:
  explicit DesktopLibraries(QString folder) : folder_(std::move(folder)) {}
  LoadedLibrary Load(const QString& name) override;
  QStringList Places() const override;
  bool HasBoard(const QString& board) const override;
  QStringList Boards() const override;
  void TakeBoard(const QString& board) override { taken_ = BoardFolder(board); }

 private:
  /// In the build and in the package alike, the boards are in a folder next to the program's.
  QString BoardFolder(const QString& board) const;

  QString folder_;
  QString taken_;  ///< the folder of the board in use
};

class DesktopFiles final : public Files {
 public:
  std::optional<FileState> Look(const QString& path) override;
  FileAppend Append(const QString& path, const std::optional<FileState>& seen, const QByteArray& bytes) override;
  bool Cut(const QString& path, const FileState& seen, std::int64_t size) override;
  QString VolumeOf(const QString& path) override;
  bool Replace(const QString& path, const QByteArray& bytes) override;
  std::optional<QByteArray> Read(const QString& path, std::int64_t limit) override;
  std::optional<QByteArray> ReadAt(const QString& path, std::int64_t from, std::int64_t count) override;
  void Remove(const QString& path) override;
  QStringList List(const QString& folder) override;
  bool MakeFolder(const QString& folder) override;
  std::shared_ptr<void> Claim(const QString& path) override;
};

class SignalWatch;

/// A process without a desktop's session.
class PlainProcess : public Process {
 public:
  PlainProcess();
  ~PlainProcess() override;
  void OnEndOrders(EndOrders orders) override;
  [[noreturn]] void End(int status) override;
  QString Folder() const override;
  QString StateFolder() const override;
  QString Variable(const char* name) const override;
  void SetVariable(const char* name, const QString& text) override;

 private:
  std::unique_ptr<SignalWatch> signals_;
};

/// While it exists, handles requests from outside to end the program.
class EndWatch;

class DesktopProcess final : public PlainProcess {
 public:
  DesktopProcess();
  ~DesktopProcess() override;
  void OnEndOrders(EndOrders orders) override;

 private:
  std::unique_ptr<EndWatch> watch_;
};

}  // namespace zth::platform
