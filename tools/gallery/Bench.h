#pragma once

#include <QPointF>
#include <QRect>
#include <QTemporaryDir>

#include "tests/support/SimulatedDesk.h"

namespace zth::gallery {

/// The whole program on a simulated board that was just switched on, both in virtual time: one a scene. It stands on
/// the ground of the tests, which fails where a control is missing or cannot be used and where a box comes up that
/// nobody expects; here such a failure is a std::runtime_error and ends the scene.
class Bench {
 public:
  explicit Bench(bool opensEasySetup = false);

  void Run(double seconds);
  shell::frmMain& Main() { return board_.desk.Main(); }

  /// Opens a window, or brings it to the front, and puts its frame there; an empty place leaves it where it comes up.
  windows::ChildWindow& Open(const QString& window, const QRect& place = {});
  /// An open window, and its frame.
  windows::ChildWindow& Window(const QString& window);
  QWidget& Frame(const QString& window) { return *Window(window).parentWidget(); }

  /// What a user does in an open window, as tests/support/Steps.h has it: "chkEnGPIO=1; txtMaxPWM=90; cmdApply".
  void Do(const QString& window, const QString& steps);
  /// An item of a list, by its text.
  void Pick(const QString& window, const QString& list, const QString& item);
  /// Drags a gauge's slider, 2 for the low limit and 3 for the high or only one.
  void Drag(const QString& window, const QString& gauge, int slider, double value);
  /// A node of the register map's tree, by its text.
  void PickNode(const QString& window, const QString& tree, const QString& text);
  /// Keys and the pointer on a control, as tests/widgets/controls/UserInput.h has them; places are fractions of its
  /// width, on a quarter of its height.
  void Play(const QString& window, const QString& control, const QString& steps);

  /// What the next file dialog answers: a file of this name in a folder of the scene's own.
  void AnswerFile(const QString& name);

  static void Settle();

 private:
  QTemporaryDir folder_;
  testing::SimulatedDesk board_{"noise = 1"};
};

}  // namespace zth::gallery
