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

}  // namespace

const std::vector<WindowModel>& AllWindows() {
  static const std::vector<WindowModel> all{
      {"frmGenConfig", kGenControls, {{0x01, 0xD0}, {0x02, 0xFD}, {0x03, 0x71}, {0x0C, 0xBF}}},
      {"frmFanConfig",
       FanControls(),
       {{0x07, 0},
        {0x08, 0},
        {0x01, 0xEF},
        {0x02, 0x02},
        {0x2C, 0},
        {0x0D, 0xFC},
        {0x1A, 0},
        {0x1B, 0},
        {0x21, 0},
        {0x22, 0},
        {0x23, 0},
        {0x24, 0},
        {0x25, 0},
        {0x26, 0},
        {0x28, 0},
        {0x29, 0},
        {0x2A, 0},
        {0x2B, 0}}},
      {"frmVoltConfig", VoltControls(), {{0x18, 0}, {0x19, 0}}},
      {"frmTherm", ThermControls(), {{0x03, 0xEF}, {0x0D, 0x03}, {0x0E, 0}, {0x0F, 0}, {0x54, 0}, {0x55, 0}}},
      {"frmEDO", EdoControls(), {{0x16, 0xFC}, {0x37, 0}, {0x38, 0}}},
  };
  return all;
}

const WindowModel& Model(const QString& name) {
  for (const WindowModel& window : AllWindows()) {
    if (name == window.name) return window;
  }
  throw std::out_of_range("no such window");
}

QString RegisterName(int reg) {
  static const std::map<int, QString> names{
      {0x01, "Configuration 1"},
      {0x02, "Configuration 2"},
      {0x03, "Configuration 3"},
      {0x07, "Tach Enable"},
      {0x08, "Tach Configuration"},
      {0x0C, "Tmin_Cal2"},
      {0x0D, "THERM Configuration"},
      {0x0E, "Conf_Therm1"},
      {0x0F, "Conf_Therm2"},
      {0x16, "EDO Enable"},
      {0x18, "Attenuators 1 En"},
      {0x19, "Attenuators 2 En"},
      {0x1A, "Enhance Acoustics 1"},
      {0x1B, "Enhance Acoustics 2"},
      {0x21, "PWM1 Config"},
      {0x22, "PWM2 Config"},
      {0x23, "PWM3 Config"},
      {0x24, "PWM4 Config"},
      {0x25, "PWM 1&2 Freq"},
      {0x26, "PWM 3&4 Freq"},
      {0x28, "PWM1 Min"},
      {0x29, "PWM2 Min"},
      {0x2A, "PWM3 Min"},
      {0x2B, "PWM4 Min"},
      {0x2C, "PWM 1-4 Max"},
      {0x37, "EDO Mask 1"},
      {0x38, "EDO Mask 2"},
      {0x54, "Local/Remote 1 Hyst"},
      {0x55, "Remote 2 / Remote 3 Hyst"},
  };
  return names.at(reg);
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

QString Held(const QWidget& window, const QString& control) {
  auto& widget = Desk::Get<QWidget>(window, control);
  if (const auto* list = qobject_cast<const QComboBox*>(&widget)) return QString::number(list->currentIndex());
  if (const auto* box = qobject_cast<const QLineEdit*>(&widget)) return box->text();
  return qobject_cast<const QAbstractButton*>(&widget)->isChecked() ? "1" : "0";
}

void Put(const QWidget& window, const QString& control, const QString& held) {
  auto& widget = Desk::Get<QWidget>(window, control);
  if (qobject_cast<const QComboBox*>(&widget) != nullptr) {
    Desk::Pick(window, control, held.toInt());
  } else if (qobject_cast<const QLineEdit*>(&widget) != nullptr) {
    Desk::Type(window, control, held);
  } else {
    Desk::Check(window, control, held == "1");
  }
}

}  // namespace zth::testing
