#include "windows/config/frmTherm.h"

#include <array>

#include <QGridLayout>
#include <QGroupBox>
#include <QPushButton>
#include <QTabWidget>

#include "widgets/Named.h"
#include "windows/Handlers.h"
#include "windows/Rows.h"

namespace zth::windows {
namespace {

// "8" stands for the last three values of the field: values 5 and 6 are shown as "8" and written as 7.
constexpr std::array kWindows{"0.25", "0.5", "1", "2", "4", "8", "8", "8"};

constexpr std::array kTimer{
    Check("chkThermThreshold", "&Enable Low THERM Threshold", "Configuration 3"_reg, 4),
    Check({"chkEnTH", 0}, "Enable THERM&1 Timer", At("Conf_Therm1", "T1TE")),
    List({"cmbWindow", 0}, "THERM1 Timer Wi&ndow", At("THERM Configuration", "TW1"), kWindows),
    Check({"chkEnTH", 1}, "Enable THERM&2 Timer", At("Conf_Therm2", "T2E")),
    List({"cmbWindow", 1}, "THERM2 Timer Win&dow", At("THERM Configuration", "TW2"), kWindows),
};
constexpr std::array kTherm1{
    Check({"chkTHAssert", 0}, "Assert THERM1 when Local Temp exceeds Local THERM Limit ", At("Conf_Therm1", "Lcl")),
    Check({"chkTHAssert", 1}, "Assert THERM1 when Remote1 Temp exceeds Remote1 THERM Limit ", At("Conf_Therm1", "R1")),
    Check({"chkTHAssert", 2}, "Assert THERM1 when Remote2 Temp exceeds Remote2 THERM Limit ", At("Conf_Therm1", "R2")),
    Check({"chkTHAssert", 3}, "Assert THERM1 when Remote3 Temp exceeds Remote3 THERM Limit ", At("Conf_Therm1", "R3")),
};
constexpr std::array kTherm2{
    Check({"chkTHAssert", 4}, "Assert THERM2 when Local Temp exceeds Local THERM Limit ", At("Conf_Therm2", "Lcl")),
    Check({"chkTHAssert", 5}, "Assert THERM2 when Remote1 Temp exceeds Remote1 THERM Limit ", At("Conf_Therm2", "R1")),
    Check({"chkTHAssert", 6}, "Assert THERM2 when Remote2 Temp exceeds Remote2 THERM Limit ", At("Conf_Therm2", "R2")),
    Check({"chkTHAssert", 7}, "Assert THERM2 when Remote3 Temp exceeds Remote3 THERM Limit ", At("Conf_Therm2", "R3")),
};
constexpr std::array kHysteresis{
    Text({"txtHyst", 0}, "&Local THERM Hysteresis", At("Local/Remote 1 Hyst", "LH"), kNibble, "UpDown1"),
    Text({"txtHyst", 1}, "Remote&1 THERM Hysteresis", At("Local/Remote 1 Hyst", "RH1"), kNibble, "UpDown2"),
    Text({"txtHyst", 2}, "Remote&2 THERM Hysteresis", At("Remote 2 / Remote 3 Hyst", "RH2"), kNibble, "UpDown3"),
    Text({"txtHyst", 3}, "Remote&3 THERM Hysteresis", At("Remote 2 / Remote 3 Hyst", "RH3"), kNibble, "UpDown4"),
};
constexpr auto kRows = Joined(kTimer, kTherm1, kTherm2, kHysteresis);
constexpr std::array kReads{Read("Configuration 3"_reg), Read("THERM Configuration"_reg, 3),
                            Read("Local/Remote 1 Hyst"_reg, 2)};
constexpr std::array kWrites{Modify("Configuration 3"_reg),    Modify("THERM Configuration"_reg),
                             Whole("Conf_Therm1"_reg),         Whole("Conf_Therm2"_reg),
                             Whole("Local/Remote 1 Hyst"_reg), Whole("Remote 2 / Remote 3 Hyst"_reg)};
static_assert(IsSound(kRows, kReads, kWrites));

constexpr int kThermLimitsTab = 4;

}  // namespace

frmTherm::frmTherm(const Context& context)
    : ConfigWindow("frmTherm", "THERM Configuration", context, {kRows, kReads, kWrites}) {
  auto* tabs = widgets::Named<QTabWidget>("SSTab1", this);
  OnTab(*tabs);

  QGridLayout& timer = AddPage(*tabs, "THERM Ti&mer");
  BuildRows(timer, kTimer);
  QGridLayout& interrupt = AddPage(*tabs, "THERM &Interrupt");
  BuildGroup(interrupt, "THERM1", kTherm1);
  BuildGroup(interrupt, "THERM2", kTherm2);
  QGridLayout& limits = AddPage(*tabs, "THERM H&ysteresis/Limits");
  BuildRows(limits, kHysteresis);

  auto* cmdSetlimits = widgets::Named<QPushButton>("cmdSetlimits", "&Set THERM Limits", limits.parentWidget());
  cmdSetlimits->setToolTip("Open the Limits window on its tab THERM Limits; nothing is written here");
  OnClick(*cmdSetlimits, [this] { cmdSetlimits_Click(); });
  limits.addWidget(cmdSetlimits, limits.rowCount(), 0, 1, 3, Qt::AlignLeft);

  Finish(tabs);
}

void frmTherm::cmdSetlimits_Click() {
  ChildWindow* limits = TheDesktop().OpenWindow("frmLimits");
  auto* tabs = limits != nullptr ? limits->findChild<QTabWidget*>("SSTab1") : nullptr;
  if (tabs != nullptr) tabs->setCurrentIndex(kThermLimitsTab);
}

}  // namespace zth::windows
