#pragma once

#include <memory>
#include <string>

#include <QPointF>
#include <QRect>
#include <QString>
#include <QTemporaryDir>

#include "BenchBoard.h"
#include "BenchClock.h"
#include "shell/frmMain.h"
#include "windows/ChildWindow.h"

namespace zth::gallery {

/// The whole program on a simulated board that was just switched on, both in virtual time: one a scene. Controls are
/// found by their objectName and used as a user does; one that is not there, or cannot be used, ends the scene by a
/// std::runtime_error, and so does a box that nobody expects.
class Bench {
 public:
  /// `settings` are those of the simulated board.
  explicit Bench(bool opensEasySetup = false, const std::string& settings = {});
  ~Bench();
  Bench(const Bench&) = delete;
  Bench& operator=(const Bench&) = delete;

  void Run(double seconds);
  shell::frmMain& Main() { return *shell::MainForm; }

  /// Opens a window, or brings it to the front, and puts its frame there; an empty place leaves it where it comes up.
  windows::ChildWindow& Open(const QString& window, const QRect& place = {});
  /// The frame of an open window.
  QWidget& Frame(const QString& window);

  void Press(const QString& window, const QString& button);
  void Tick(const QString& window, const QString& box, bool on = true);
  void Type(const QString& window, const QString& box, const QString& text);
  void Pick(const QString& window, const QString& list, const QString& item);
  void Turn(const QString& window, const QString& tabs, int page);
  void Slide(const QString& window, const QString& slider, double percent);
  /// Drags a gauge's slider, 2 for the low limit and 3 for the high or only one.
  void Drag(const QString& window, const QString& gauge, int slider, double value);
  /// A node of the register map's tree, by its text.
  void PickNode(const QString& window, const QString& tree, const QString& text);
  /// A key on a control.
  void Key(const QString& window, const QString& control, int key);
  /// The pointer on a control, at fractions of its width and height, and a click there.
  void Point(const QString& window, const QString& control, QPointF at, bool click = false);

  /// What the next file dialog answers: a file of this name in a folder of the scene's own.
  void AnswerFile(const QString& name);
  QString FilePath(const QString& name) const { return folder_.filePath(name); }

  static void Settle();

 private:
  template <typename Control>
  Control& Get(const QString& window, const QString& name);
  template <typename Control>
  Control& Usable(const QString& window, const QString& name);

  struct Parts;
  QTemporaryDir folder_;
  BenchClock clock_;
  BenchBoard board_;
  std::unique_ptr<Parts> parts_;
};

}  // namespace zth::gallery
