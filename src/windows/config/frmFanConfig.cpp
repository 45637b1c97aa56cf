#include "windows/config/frmFanConfig.h"

#include <array>

#include <QCheckBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QPushButton>
#include <QTabWidget>

#include "chip/ChannelNames.h"
#include "widgets/Named.h"
#include "windows/Editors.h"
#include "windows/Handlers.h"
#include "windows/Rows.h"

namespace zth::windows {
namespace {

constexpr std::array kPulses{"1", "2", "3", "4"};
constexpr std::array kSpinUps{"None", "100ms", "250ms", "400ms", "667ms", "1 sec", "2 sec", "4 sec"};
constexpr std::array kRampRates{"35 sec", "17.6  sec", "11.8  sec", "7 sec", "4.4 sec", "3 sec", "1.6 sec", "0.8 sec"};
constexpr std::array kFrequencies{"11Hz", "14.7Hz", "22.1Hz", "29.4Hz", "35.3Hz", "44.1Hz", "58.8Hz", "88.2Hz"};

constexpr std::array kFullSpeed{
    Check("chkThermFS1", "Fans &go to Full Speed on THERM1 Assertion", At("THERM Configuration", "B1"),
          Sense::Inverted),
    Check("chkThermFS2", "Fans go to F&ull Speed on THERM2 Assertion", At("THERM Configuration", "B2"),
          Sense::Inverted),
    Check("chkVRD1", "&Enable VRD1  Boost", At("Configuration 2", "VB1"), Sense::Inverted),
    Check("chkVRD2", "Ena&ble VRD2  Boost", At("Configuration 2", "VB2"), Sense::Inverted),
    Check("chkFullSpeed", "&Run Fans at Full Speed", At("Configuration 2", "FFS")),
};
constexpr std::array kDrive{
    Check("chkPWMMode", "Enable High Fre&quency PWM", At("Configuration 2", "HF")),
    Check("chkDisFastSpin", "&Disable Fast Spin-up", At("Configuration 1", "DFS")),
    Text("txtMaxPWM", "Ma&x PWM 1-4", Byte("PWM 1-4 Max"_reg), kDuty, "UpDown1"),
};
constexpr std::array kMeasurement{
    Check("chkFastMeasure", "Fast Fan Speed &Measurement ", At("Configuration 2", "Fst")),
    List("cmbTachPulses", "&No. Tach Pulses", At("Configuration 2", "#FP"), kPulses),
};

/// The places of one PWM's bits. The acoustics bits are given by number, because both enables of the second register
/// are named "En3".
struct Pwm {
  std::uint8_t config;
  std::uint8_t acoustics;
  std::uint8_t frequency;
  std::uint8_t minimum;
  int bit;               ///< its bit in the acoustics and frequency registers
  base::BitField field;  ///< its field in both
  int tachBit;           ///< its bit of "Tach Configuration", whose bit names run in reverse
  const char* continuous;
  const char* upDown;
};

constexpr std::array<Pwm, 4> kPwms{{
    {"PWM1 Config"_reg, "Enhance Acoustics 1"_reg, "PWM 1&2 Freq"_reg, "PWM1 Min"_reg, 0, Bits(4, 2), 0,
     "Enable Continuous Readin&gs on Tach1/Tach5 (Low Freq. Mode)", "UpDown2"},
    {"PWM2 Config"_reg, "Enhance Acoustics 1"_reg, "PWM 1&2 Freq"_reg, "PWM2 Min"_reg, 1, Bits(7, 5), 1,
     "Enable Continuous Readin&gs on Tach2/Tach6 (Low Freq. Mode)", "UpDown3"},
    {"PWM3 Config"_reg, "Enhance Acoustics 2"_reg, "PWM 3&4 Freq"_reg, "PWM3 Min"_reg, 0, Bits(4, 2), 2,
     "Enable Continuous Readin&gs on Tach3/Tach7 (Low Freq. Mode)", "UpDown4"},
    {"PWM4 Config"_reg, "Enhance Acoustics 2"_reg, "PWM 3&4 Freq"_reg, "PWM4 Min"_reg, 1, Bits(7, 5), 3,
     "Enable Continuous Readin&gs on Tach4/Tach8 (Low Freq. Mode)", "UpDown5"},
}};

constexpr auto OutputRows(int i) {
  const Pwm& pwm = kPwms[static_cast<std::size_t>(i)];
  return std::array{
      List({"cmbControl", i}, "Co&ntrol Source", {pwm.config, chip::kBehaviour}, chip::kBehaviourNames),
      Check({"chkEnActiveLow", i}, "PWM%1 &is Active Low", {pwm.config, Field("PWM1 Config", "Inv")}, Sense::Inverted),
  };
}

constexpr auto RampRows(int i) {
  const Pwm& pwm = kPwms[static_cast<std::size_t>(i)];
  return std::array{
      List({"cmbSpinup", i}, "Spin-&up Timeout", {pwm.config, Field("PWM1 Config", "Spin")}, kSpinUps),
      Check({"chkEnEnhance", i}, "&Enable Enhanced Acoustics on PWM%1", pwm.acoustics, pwm.bit),
      List({"cmbRampRate", i}, "Enhance Acoustics &Ramp Rate", {pwm.acoustics, pwm.field}, kRampRates),
      Check({"chk4xRampRate", i}, "4 &x Acoustic Ramp Rate", {pwm.config, Field("PWM1 Config", "Slow")}),
  };
}

constexpr auto MinimumRows(int i) {
  const Pwm& pwm = kPwms[static_cast<std::size_t>(i)];
  return std::array{
      Text({"txtMinPWM", i}, "PWM%1 Min &Duty Cycle", Byte(pwm.minimum), kDuty, pwm.upDown),
      Check({"chkMinSpeed", i}, "Hold PWM%1 at PWM&min at temperatures below Tmin", pwm.frequency, pwm.bit),
  };
}

constexpr auto LowFrequencyRows(int i) {
  const Pwm& pwm = kPwms[static_cast<std::size_t>(i)];
  return std::array{
      List({"cmbLowFreq", i}, "Low  Fre&quency Selection", {pwm.frequency, pwm.field}, kFrequencies),
      Check({"chkEnCont", i}, pwm.continuous, "Tach Configuration"_reg, pwm.tachBit),
  };
}

constexpr auto PwmRows(int i) {
  return Joined(OutputRows(i), RampRows(i), MinimumRows(i), LowFrequencyRows(i));
}

constexpr auto kPwmRows = std::array{PwmRows(0), PwmRows(1), PwmRows(2), PwmRows(3)};

constexpr std::array kTachs{
    Check({"chkEnTach", 0}, "Enable Tach%1", At("Tach Enable", "T1E")),
    Check({"chkEnTach", 1}, "Enable Tach%1", At("Tach Enable", "T2E")),
    Check({"chkEnTach", 2}, "Enable Tach%1", At("Tach Enable", "T3E")),
    Check({"chkEnTach", 3}, "Enable Tach%1", At("Tach Enable", "T4E")),
    Check({"chkEnTach", 4}, "Enable Tach%1", At("Tach Enable", "T5E")),
    Check({"chkEnTach", 5}, "Enable Tach%1", At("Tach Enable", "T6E")),
    Check({"chkEnTach", 6}, "Enable Tach%1", At("Tach Enable", "T7E")),
    Check({"chkEnTach", 7}, "Enable Tach%1", At("Tach Enable", "T8E")),
};

constexpr auto kRows =
    Joined(kFullSpeed, kDrive, kMeasurement, kPwmRows[0], kPwmRows[1], kPwmRows[2], kPwmRows[3], kTachs);
constexpr std::array kReads{Read("Tach Enable"_reg, 2),         Read("Configuration 1"_reg, 2),
                            Read("THERM Configuration"_reg),    Read("PWM 1-4 Max"_reg),
                            Read("Enhance Acoustics 1"_reg, 2), Read("PWM1 Config"_reg, 4),
                            Read("PWM 1&2 Freq"_reg, 2),        Read("PWM1 Min"_reg, 4)};
constexpr std::array kWrites{
    Whole("Tach Enable"_reg),
    Whole("Tach Configuration"_reg),
    Modify("Configuration 1"_reg),
    Modify("Configuration 2"_reg),
    Whole("PWM 1-4 Max"_reg),
    Modify("THERM Configuration"_reg),
    Whole("Enhance Acoustics 1"_reg),
    Whole("Enhance Acoustics 2"_reg),
    Whole("PWM1 Config"_reg),
    Whole("PWM2 Config"_reg),
    Whole("PWM3 Config"_reg),
    Whole("PWM4 Config"_reg),
    Whole("PWM 1&2 Freq"_reg),
    Whole("PWM 3&4 Freq"_reg),
    Whole("PWM1 Min"_reg),
    Whole("PWM2 Min"_reg),
    Whole("PWM3 Min"_reg),
    Whole("PWM4 Min"_reg),
};
static_assert(IsSound(kRows, kReads, kWrites));

}  // namespace

frmFanConfig::frmFanConfig(const Context& context)
    : ConfigWindow("frmFanConfig", "Fan Configuration", context, {kRows, kReads, kWrites}) {
  auto* tabs = widgets::Named<QTabWidget>("SSTab1", this);
  OnTab(*tabs);

  QGridLayout& all = AddFramedPage(*tabs, "A&ll Fans", "Frame1", "Settings for all fans");
  BuildGroup(all, "Full speed and boost", kFullSpeed);
  BuildGroup(all, "PWM drive", kDrive);
  BuildGroup(all, "Speed measurement", kMeasurement);
  for (int i = 0; i < static_cast<int>(kPwms.size()); ++i) {
    const QString number = QString::number(i + 1);
    QGridLayout& page =
        AddFramedPage(*tabs, "PWM&" + number, QString("Frame2(%1)").arg(i), QString("PWM%1 Configuration").arg(number));
    BuildGroup(page, "Output", OutputRows(i));
    BuildGroup(page, "Spin-up and ramp", RampRows(i));
    BuildGroup(page, "Minimum duty", MinimumRows(i));
    BuildGroup(page, "Low frequency mode", LowFrequencyRows(i));
  }
  BuildTachPage(*tabs);
  Finish(tabs);
}

void frmFanConfig::BuildTachPage(QTabWidget& tabs) {
  QGridLayout& grid = AddFramedPage(tabs, "Tach&s", "Frame3", "Enable Tachs");
  BuildRows(grid, kTachs);
  auto* buttons = new QHBoxLayout;
  buttons->setSpacing(fontMetrics().averageCharWidth());
  const auto add = [&](const char* name, const char* caption, const QString& tip) {
    auto* button = widgets::Named<QPushButton>(name, caption, grid.parentWidget());
    button->setToolTip(tip);
    buttons->addWidget(button);
    return button;
  };
  const QString place = PlaceOf(Check("", nullptr, Byte("Tach Enable"_reg)));
  OnClick(*add("cmdEnableAll", "&Enable All", "Tick all eight: " + place), [this] { cmdEnableAll_Click(); });
  OnClick(*add("cmdDisableAll", "&Disable All", "Untick all eight: " + place), [this] { cmdDisableAll_Click(); });
  buttons->addStretch();
  grid.addLayout(buttons, grid.rowCount(), 0, 1, 3);
}

void frmFanConfig::TickAllTachs(bool on) {
  for (const Binding& row : kTachs) findChild<QCheckBox*>(NameOf(row.control))->setChecked(on);
}

void frmFanConfig::cmdEnableAll_Click() {
  TickAllTachs(true);
}

void frmFanConfig::cmdDisableAll_Click() {
  TickAllTachs(false);
}

}  // namespace zth::windows
