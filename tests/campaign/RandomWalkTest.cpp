// What must hold at all times, held against the program behind each action of a user without a plan.
// The same seed walks the same way again: with ZTH_TELL_WALK set it tells each step, up to a failure or a crash.
#include <cmath>
#include <set>

#include <QComboBox>
#include <QMdiArea>
#include <gtest/gtest.h>

#include "chip/PinModel.h"
#include "link/Declarations.h"
#include "link/LinkErrors.h"
#include "tests/campaign/RandomUser.h"
#include "tests/support/EveryWindow.h"
#include "widgets/Strip.h"
#include "windows/SharedState.h"

namespace zth::testing {
namespace {

constexpr int kActions = 10'000;

/// Qt tells of misuse by warnings; what the offscreen platform cannot do is none.
void FailOnWarning(QtMsgType /*type*/, const QMessageLogContext& /*context*/, const QString& text) {
  if (!text.startsWith("This plugin does not support")) ADD_FAILURE() << text.toStdString();
}

class RandomWalk : public ::testing::TestWithParam<unsigned> {
 protected:
  void ExpectTheProgramRuns() {
    EXPECT_TRUE(user_.TheDesk().process.ends.empty()) << "the program ended by itself";
    EXPECT_FALSE(link::LinkHeld());
    EXPECT_EQ(user_.sim->refused, 0) << "a transfer that the board did not take";
    EXPECT_TRUE(Main().findChild<QTimer*>("tmrMaster")->isActive()) << "the monitor stands still";
    EXPECT_FALSE(windows::ManualSliderHeld) << "nobody holds a slider";
  }

  void ExpectWindowsOnce() {
    std::set<std::string> names;
    for (const auto* window : Main().findChildren<windows::ChildWindow*>()) {
      const std::string name = window->objectName().toStdString();
      EXPECT_TRUE(names.insert(name).second) << name << " is there twice";
      EXPECT_EQ(Main().FindWindow(name.c_str()), window);
    }
    for (const auto& [name, open] : OpenFlags()) EXPECT_EQ(names.contains(name), *open) << name;
    EXPECT_EQ(Main().findChild<QMdiArea*>()->subWindowList().size(), static_cast<qsizetype>(names.size()));
  }

  void ExpectModels() {
    SimulatedDesk& sim = *user_.sim;
    const bool usb = link::InterfaceMode == link::kModeUsb;
    EXPECT_EQ(Desk::Text(Main(), "cmbDevices"),
              QString::asprintf("%02Xh on %s", link::DeviceAddress, usb ? "USB" : "SMBus"));
    sim.CatchUp();
    const auto held = [&](std::size_t reg) {
      return (usb ? sim.usb.TheBus() : sim.smbus.TheBus()).Read(link::DeviceAddress, static_cast<std::uint8_t>(reg));
    };
    auto manual = link::PwmManual;
    for (std::size_t pwm = 1; pwm <= 4; ++pwm) manual[pwm] = held(0x20 + pwm) >> 5 == 7;
    const auto pins = chip::DecodePinFunctions({held(0x10), held(0x11), held(0x12), held(0x13)});

    const auto resets = sim.requests[{0xDE, 0, 0}] + sim.requests[{0, 0, 0}];
    behind_ = behind_ || std::exchange(user_.switched, false) || resets_ != resets;
    resets_ = resets;
    const bool same = chip::PinFunctions == pins && link::PwmManual == manual;
    EXPECT_TRUE(same || behind_) << "the pins or the behaviours are not the chip's";
    behind_ = behind_ && !same;
  }

  void ExpectCharts() {
    for (const auto* chart : Main().findChildren<widgets::Strip*>()) {
      EXPECT_TRUE(std::isfinite(chart->XSpan()) && chart->XSpan() > 0) << chart->Title().toStdString();
      EXPECT_TRUE(std::isfinite(chart->XEnd())) << chart->Title().toStdString();
      EXPECT_LT(chart->AxisMin(), chart->AxisMax()) << chart->Title().toStdString();
    }
  }

  RandomUser user_{GetParam()};

 private:
  shell::frmMain& Main() { return user_.Main(); }

  /// The chip has been changed where the program reads nothing anew: by another device or a reset. Until the model has
  /// caught up, it is not held against the chip.
  bool behind_ = false;
  std::int64_t resets_ = 0;  ///< writes to 0x00, which holds the reset
};

TEST_P(RandomWalk, FindsNoWayToBreakTheProgram) {
  qInstallMessageHandler(FailOnWarning);
  for (int action = 0; action < kActions && !HasFailure(); ++action) {
    user_.Act();
    ExpectTheProgramRuns();
    ExpectWindowsOnce();
    ExpectModels();
    if (action % 20 == 0) ExpectCharts();
  }
  EXPECT_GT(user_.restarts + user_.boxes + user_.files, 10) << "a walk that goes nowhere";
}

INSTANTIATE_TEST_SUITE_P(Seeds, RandomWalk, ::testing::Range(1U, 11U));

}  // namespace
}  // namespace zth::testing
