#include "tests/windows/config/ConfigModel.h"

#include <stdexcept>

namespace zth::testing {
namespace {

std::vector<Control> FanControls() {
  std::vector<Control> all{
      {"chkDisFastSpin", 0x01, 4, 1, Look::Ticked},  {"chkFastMeasure", 0x02, 0, 1, Look::Ticked},
      {"chkPWMMode", 0x02, 2, 1, Look::Ticked},      {"chkVRD1", 0x02, 3, 1, Look::Unticked},
      {"chkVRD2", 0x02, 4, 1, Look::Unticked},       {"chkFullSpeed", 0x02, 5, 1, Look::Ticked},
      {"cmbTachPulses", 0x02, 6, 2, Look::Position}, {"chkThermFS1", 0x0D, 0, 1, Look::Unticked},
      {"chkThermFS2", 0x0D, 1, 1, Look::Unticked},   {"txtMaxPWM", 0x2C, 0, 8, Look::Duty},
  };
  for (int i = 0; i < 4; ++i) {
    const QString n = QString("(%1)").arg(i);
    const int half = i / 2;
    const bool upper = i % 2 == 1;
    all.push_back({"cmbSpinup" + n, 0x21 + i, 0, 3, Look::Position});
    all.push_back({"chk4xRampRate" + n, 0x21 + i, 3, 1, Look::Ticked});
    all.push_back({"chkEnActiveLow" + n, 0x21 + i, 4, 1, Look::Unticked});
    all.push_back({"cmbControl" + n, 0x21 + i, 5, 3, Look::Position});
    all.push_back({"chkEnEnhance" + n, 0x1A + half, upper ? 1 : 0, 1, Look::Ticked});
    all.push_back({"cmbRampRate" + n, 0x1A + half, upper ? 5 : 2, 3, Look::Position});
    all.push_back({"chkMinSpeed" + n, 0x25 + half, upper ? 1 : 0, 1, Look::Ticked});
    all.push_back({"cmbLowFreq" + n, 0x25 + half, upper ? 5 : 2, 3, Look::Position});
    all.push_back({"txtMinPWM" + n, 0x28 + i, 0, 8, Look::Duty});
    all.push_back({"chkEnCont" + n, 0x08, i, 1, Look::Ticked});
  }
  for (int i = 0; i < 8; ++i) all.push_back({QString("chkEnTach(%1)").arg(i), 0x07, i, 1, Look::Ticked});
  return all;
}

std::vector<Control> VoltControls() {
  std::vector<Control> all;
  for (int i = 0; i < 13; ++i) {
    all.push_back({QString("chkDisAtten(%1)").arg(i), i < 7 ? 0x18 : 0x19, i < 7 ? i + 1 : i - 7, 1, Look::Unticked});
  }
  return all;
}

std::vector<Control> ThermControls() {
  std::vector<Control> all{
      {"chkThermThreshold", 0x03, 4, 1, Look::Ticked},    {"chkEnTH(0)", 0x0E, 0, 1, Look::Ticked},
      {"chkEnTH(1)", 0x0F, 0, 1, Look::Ticked},           {"cmbWindow(0)", 0x0D, 2, 3, Look::LastThreeAlike},
      {"cmbWindow(1)", 0x0D, 5, 3, Look::LastThreeAlike}, {"txtHyst(0)", 0x54, 0, 4, Look::Number},
      {"txtHyst(1)", 0x54, 4, 4, Look::Number},           {"txtHyst(2)", 0x55, 0, 4, Look::Number},
      {"txtHyst(3)", 0x55, 4, 4, Look::Number},
  };
  for (int i = 0; i < 8; ++i) {
    all.push_back({QString("chkTHAssert(%1)").arg(i), i < 4 ? 0x0E : 0x0F, i % 4 + 1, 1, Look::Ticked});
  }
  return all;
}

std::vector<Control> EdoControls() {
  std::vector<Control> all{{"chkEDOEnable(0)", 0x16, 0, 1, Look::Ticked},
                           {"chkEDOEnable(1)", 0x16, 1, 1, Look::Ticked}};
  for (int i = 0; i < 8; ++i) {
    all.push_back({QString("chkEDO1Mask(%1)").arg(i), 0x37, i, 1, Look::Ticked, i == 4});
    all.push_back({QString("chkEDO2Mask(%1)").arg(i), 0x38, i, 1, Look::Ticked, i == 4});
  }
  return all;
}

const std::vector<Control> kGenControls{
    {"chkEnableMonitoring", 0x01, 0, 1, Look::Ticked}, {"chkEnVoltAve", 0x01, 1, 1, Look::Ticked},
    {"chkEnTempAve", 0x01, 2, 1, Look::Ticked},        {"chkAlertMode", 0x01, 3, 1, Look::Unticked},
    {"chkSetupComplete", 0x01, 5, 1, Look::Ticked},    {"chkShutDown", 0x02, 1, 1, Look::Ticked},
    {"chkEnSCLTmout", 0x03, 1, 1, Look::Ticked},       {"chkEnSDATmout", 0x03, 2, 1, Look::Ticked},
    {"chkVIDThreshold", 0x03, 3, 1, Look::Ticked},     {"chkVcore", 0x03, 7, 1, Look::Ticked},
    {"chkConLoop", 0x0C, 6, 1, Look::Unticked},
};

std::vector<Control> PinControls() {
  // The first three show the function that takes pins away first; lists of four name their last function twice.
  std::vector<Control> all;
  int at = 7;
  for (const char* n : {"s1234_31_32", "s1516", "s1920"}) {
    all.push_back({QString("cmbPin%1").arg(n), 0x10, at--, 1, Look::Unticked});
  }
  for (const int n : {1, 2, 3, 4, 7}) all.push_back({QString("cmbPin%1").arg(n), 0x10, at--, 1, Look::Position});
  at = 7;
  for (const int n : {8, 13, 15, 20, 21, 22}) {
    all.push_back({QString("cmbPin%1").arg(n), 0x11, at--, 1, Look::Position});
  }
  const std::initializer_list<Control> rest{
      {"cmbPin23", 0x11, 0, 2, Look::Position},     {"cmbPin24", 0x12, 6, 2, Look::Position},
      {"cmbPin25", 0x12, 4, 2, Look::LastTwoAlike}, {"cmbPin26", 0x12, 2, 2, Look::LastTwoAlike},
      {"cmbPin27", 0x12, 1, 1, Look::Position},     {"cmbPin28", 0x13, 6, 2, Look::LastTwoAlike},
      {"cmbPin29", 0x13, 4, 2, Look::LastTwoAlike}, {"cmbPin31", 0x13, 3, 1, Look::Position},
      {"cmbPin32", 0x13, 2, 1, Look::Position}};
  all.insert(all.end(), rest);
  return all;
}

/// A register that is written whole keeps nothing, one that is modified all bits that are no control's.
WindowModel Window(const char* name, const std::vector<Control>& controls, const std::vector<int>& whole,
                   const std::vector<int>& modified) {
  WindowModel window{name, controls, {}};
  for (const int reg : whole) window.kept.emplace_back(reg, 0);
  for (const int reg : modified) {
    unsigned kept = 0xFF;
    for (const Control& control : controls) kept &= control.reg == reg ? ~control.Mask() : 0xFF;
    window.kept.emplace_back(reg, kept);
  }
  return window;
}

}  // namespace

const std::vector<WindowModel>& AllWindows() {
  static const std::vector<WindowModel> all{
      Window("frmGenConfig", kGenControls, {}, {0x01, 0x02, 0x03, 0x0C}),
      Window("frmFanConfig", FanControls(),
             {0x07, 0x08, 0x2C, 0x1A, 0x1B, 0x21, 0x22, 0x23, 0x24, 0x25, 0x26, 0x28, 0x29, 0x2A, 0x2B},
             {0x01, 0x02, 0x0D}),
      Window("frmVoltConfig", VoltControls(), {0x18, 0x19}, {}),
      Window("frmTherm", ThermControls(), {0x0E, 0x0F, 0x54, 0x55}, {0x03, 0x0D}),
      Window("frmEDO", EdoControls(), {0x37, 0x38}, {0x16}),
      Window("frmPinConfig", PinControls(), {0x10, 0x11, 0x12, 0x13}, {}),
  };
  return all;
}

const WindowModel& Model(const QString& name) {
  for (const WindowModel& window : AllWindows()) {
    if (name == window.name) return window;
  }
  throw std::out_of_range("no such window");
}

QString Shown(const Control& control, unsigned byte) {
  const int field = static_cast<int>((byte & control.Mask()) >> control.low);
  if (control.look == Look::Unticked) return QString::number(1 - field);
  if (control.look == Look::Duty) return QString::number(HalfEven(field * 100, 255));
  return QString::number(field);
}

unsigned Sent(const Control& control, const QString& shown) {
  const int value = shown.toInt();
  switch (control.look) {
    case Look::Unticked:
      return static_cast<unsigned>(1 - value);
    case Look::Duty:
      return static_cast<unsigned>(HalfEven(value * 255, 100));
    case Look::LastTwoAlike:
      return value >= 2 ? 3U : static_cast<unsigned>(value);
    case Look::LastThreeAlike:
      return value >= 5 ? 7U : static_cast<unsigned>(value);
    default:
      return static_cast<unsigned>(value);
  }
}

std::uint8_t Untouched(const WindowModel& window, int reg, unsigned before) {
  unsigned after = before;
  for (const auto& [own, kept] : window.kept) {
    if (own == reg) after = before & kept;
  }
  for (const Control& control : window.controls) {
    if (control.reg == reg) after |= Sent(control, Shown(control, before)) << control.low;
  }
  return static_cast<std::uint8_t>(after);
}

}  // namespace zth::testing
