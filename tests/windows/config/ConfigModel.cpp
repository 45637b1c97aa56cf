#include "tests/windows/config/ConfigModel.h"

#include <algorithm>
#include <map>
#include <set>
#include <stdexcept>

#include <QRegularExpression>

namespace zth::testing {
namespace {

/// Rows "name(0..3) 1A.2:3 p 2+3": the controls with those indices, from bit 2 of register 0x1A on, 3 bits each, two
/// per register and 3 bits apart. Ticked, Unticked, Position, Duty, Number, and lists whose last 2 or 3 items are the
/// same.
std::vector<Control> Controls(const QString& rows) {
  static const QRegularExpression form(
      R"(^(\w+)(?:\((\d+)\.\.(\d+)\))? (\w\w)\.(\d)(?::(\d))? ([tupdn23])(?: (\d)\+(\d))?$)");
  static const std::map<QString, Look> looks{
      {"t", Look::Ticked}, {"u", Look::Unticked},     {"p", Look::Position},      {"d", Look::Duty},
      {"n", Look::Number}, {"2", Look::LastTwoAlike}, {"3", Look::LastThreeAlike}};
  std::vector<Control> all;
  for (const QString& row : rows.split(", ")) {
    const auto parts = form.match(row);
    if (!parts.hasMatch()) throw std::invalid_argument(row.toStdString());
    const auto number = [&](int part, int absent) {
      return parts.captured(part).isEmpty() ? absent : parts.captured(part).toInt();
    };
    const int count = number(3, 0) - number(2, 0) + 1;
    for (int i = 0; i < count; ++i) {
      const QString index = parts.captured(2).isEmpty() ? QString() : QString("(%1)").arg(number(2, 0) + i);
      all.push_back({parts.captured(1) + index, parts.captured(4).toInt(nullptr, 16) + i / number(8, 1),
                     number(5, 0) + i % number(8, 1) * number(9, 0), number(6, 1), looks.at(parts.captured(7)),
                     parts.captured(1).endsWith("Mask") && i == 4});
    }
  }
  return all;
}

/// A register that is written whole keeps no bits; one that is modified keeps all bits without a control.
WindowModel Window(const QString& name, const std::set<int>& modified, const QString& rows) {
  WindowModel window{name, Controls(rows), {}};
  std::map<int, unsigned> owned;
  for (const Control& control : window.controls) owned[control.reg] |= control.Mask();
  for (const auto& [reg, bits] : owned) window.kept.emplace_back(reg, modified.count(reg) != 0 ? 0xFF & ~bits : 0);
  return window;
}

}  // namespace

const std::vector<WindowModel>& AllWindows() {
  static const std::vector<WindowModel> all{
      Window("frmGenConfig", {0x01, 0x02, 0x03, 0x0C},
             "chkEnableMonitoring 01.0 t, chkEnVoltAve 01.1 t, chkEnTempAve 01.2 t, chkAlertMode 01.3 u, "
             "chkSetupComplete 01.5 t, chkShutDown 02.1 t, chkEnSCLTmout 03.1 t, chkEnSDATmout 03.2 t, "
             "chkVIDThreshold 03.3 t, chkVcore 03.7 t, chkConLoop 0C.6 u"),
      Window("frmFanConfig", {0x01, 0x02, 0x0D},
             "chkDisFastSpin 01.4 t, chkFastMeasure 02.0 t, chkPWMMode 02.2 t, chkVRD1 02.3 u, chkVRD2 02.4 u, "
             "chkFullSpeed 02.5 t, cmbTachPulses 02.6:2 p, chkThermFS1 0D.0 u, chkThermFS2 0D.1 u, txtMaxPWM 2C.0:8 d, "
             "cmbSpinup(0..3) 21.0:3 p, chk4xRampRate(0..3) 21.3 t, chkEnActiveLow(0..3) 21.4 u, "
             "cmbControl(0..3) 21.5:3 p, chkEnEnhance(0..3) 1A.0 t 2+1, cmbRampRate(0..3) 1A.2:3 p 2+3, "
             "chkMinSpeed(0..3) 25.0 t 2+1, cmbLowFreq(0..3) 25.2:3 p 2+3, txtMinPWM(0..3) 28.0:8 d, "
             "chkEnCont(0..3) 08.0 t 4+1, chkEnTach(0..7) 07.0 t 8+1"),
      Window("frmVoltConfig", {}, "chkDisAtten(0..6) 18.1 u 7+1, chkDisAtten(7..12) 19.0 u 6+1"),
      Window(
          "frmTherm", {0x03, 0x0D},
          "chkThermThreshold 03.4 t, chkEnTH(0..1) 0E.0 t, cmbWindow(0..1) 0D.2:3 3 2+3, txtHyst(0..3) 54.0:4 n 2+4, "
          "chkTHAssert(0..7) 0E.1 t 4+1"),
      Window("frmEDO", {0x16},
             "chkEDOEnable(0..1) 16.0 t 2+1, chkEDO1Mask(0..7) 37.0 t 8+1, chkEDO2Mask(0..7) 38.0 t 8+1"),
      Window("frmPinConfig", {},
             "cmbPins1234_31_32 10.7 u, cmbPins1516 10.6 u, cmbPins1920 10.5 u, cmbPin1 10.4 p, cmbPin2 10.3 p, "
             "cmbPin3 10.2 p, cmbPin4 10.1 p, cmbPin7 10.0 p, cmbPin8 11.7 p, cmbPin13 11.6 p, cmbPin15 11.5 p, "
             "cmbPin20 11.4 p, cmbPin21 11.3 p, cmbPin22 11.2 p, cmbPin23 11.0:2 p, cmbPin24 12.6:2 p, "
             "cmbPin25 12.4:2 2, cmbPin26 12.2:2 2, cmbPin27 12.1 p, cmbPin28 13.6:2 2, cmbPin29 13.4:2 2, "
             "cmbPin31 13.3 p, cmbPin32 13.2 p"),
  };
  return all;
}

const WindowModel& Model(const QString& name) {
  return *std::ranges::find(AllWindows(), name, &WindowModel::name);
}

QString Shown(const Control& control, unsigned byte) {
  const int field = static_cast<int>((byte & control.Mask()) >> control.low);
  if (control.look == Look::Unticked) return QString::number(1 - field);
  if (control.look == Look::Duty) return QString::number(HalfEven(field * 100, 255));
  return QString::number(field);
}

unsigned Sent(const Control& control, const QString& shown) {
  const int value = shown.toInt();
  if (control.look == Look::Unticked) return static_cast<unsigned>(1 - value);
  if (control.look == Look::Duty) return static_cast<unsigned>(HalfEven(value * 255, 100));
  if (control.look == Look::LastTwoAlike && value >= 2) return 3;
  if (control.look == Look::LastThreeAlike && value >= 5) return 7;
  return static_cast<unsigned>(value);
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
