#pragma once

#include <cstdio>
#include <memory>
#include <random>
#include <string>

#include <QPointer>
#include <QTemporaryDir>
#include <QTimer>

#include "tests/support/SimulatedDesk.h"

namespace zth::testing {

/// A user without a plan: windows, keys, mouse, files and boxes at random on the simulated board. A seed gives the same
/// user each time.
class RandomUser {
 public:
  explicit RandomUser(unsigned seed);

  /// One action. Whoever leaves the program starts it anew, with the settings that it kept.
  void Act();

  Desk& TheDesk() { return sim->desk; }
  shell::frmMain& Main() { return TheDesk().Main(); }
  int Below(int n) { return static_cast<int>(random_() % static_cast<unsigned>(std::max(n, 1))); }

  std::unique_ptr<SimulatedDesk> sim;
  bool switched = false;  ///< another device has been picked since this was last put back
  int restarts = -1, boxes = 0, files = 0;

 private:
  template <typename List>
  auto& OneOf(List& list) {
    return *std::next(std::begin(list), Below(static_cast<int>(std::size(list))));
  }
  QPoint AnyPoint() { return {Below(control_->width()), Below(control_->height())}; }
  static void Tell(const std::string& what) {
    if (qEnvironmentVariableIsSet("ZTH_TELL_WALK")) std::fprintf(stderr, "%s\n", what.c_str());
  }

  void Start();
  void Answer();
  void Choose();
  void Trigger(QList<QAction*> entries);

  void Open();
  void PressKey();
  void MoveMouse();
  void UseContextMenu();
  void Arrange();
  void Exit();

  std::mt19937 random_;
  QTimer innerLoop_;
  QTemporaryDir folder_;
  bool left_ = false;
  QPointer<windows::ChildWindow> window_;  ///< what the action is on
  QPointer<QWidget> control_;
};

}  // namespace zth::testing
