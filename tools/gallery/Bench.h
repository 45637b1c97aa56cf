#pragma once

#include <QPointF>
#include <QRect>
#include <QTemporaryDir>

#include "tests/support/SimulatedDesk.h"

namespace zth::gallery {

/// The whole program on a simulated board that was just switched on, both in virtual time; one per scene. It uses the
/// support code of the tests, which fails if a control is missing or disabled or if an unexpected box comes up. Here
/// such a failure is a std::runtime_error and ends the scene.
class Bench {
 public:
  explicit Bench(bool opensEasySetup = false);

  void Run(double seconds);
  shell::frmMain& Main() { return board_.desk.Main(); }

  /// Opens a window, or brings it to the front, and moves its frame to `place`; if that is empty, the window stays
  /// where it opened.
  windows::ChildWindow& Open(const QString& window, const QRect& place = {});
  /// An open window, and its frame.
  windows::ChildWindow& Window(const QString& window);
  QWidget& Frame(const QString& window) { return *Window(window).parentWidget(); }

  /// A user's steps in an open window, in the notation of tests/support/Steps.h: "chkEnGPIO=1; txtMaxPWM=90; cmdApply".
  void Do(const QString& window, const QString& steps);
  /// An item of a list, by its text.
  void Pick(const QString& window, const QString& list, const QString& item);
  /// Drags a gauge's slider: 2 for the low limit, 3 for the high or only one.
  void Drag(const QString& window, const QString& gauge, int slider, double value);
  /// A node of the register map's tree, by its text.
  void PickNode(const QString& window, const QString& tree, const QString& text);
  /// Keys and pointer steps on a control, in the notation of tests/widgets/controls/UserInput.h. Places are fractions
  /// of its width, at a quarter of its height.
  void Play(const QString& window, const QString& control, const QString& steps);

  /// The answer of the next file dialog: a file of this name in the scene's own folder.
  void AnswerFile(const QString& name);

  static void Settle();

 private:
  QTemporaryDir folder_;
  testing::SimulatedDesk board_{"noise = 1"};
};

}  // namespace zth::gallery
