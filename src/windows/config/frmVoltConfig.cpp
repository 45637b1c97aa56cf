#include "windows/config/frmVoltConfig.h"

#include <array>

#include <QGroupBox>

#include "windows/Rows.h"

namespace zth::windows {
namespace {

// The register bits enable but the captions say disable, so ticked is 0. "P5" and the reserved bits have no box. The
// bit of pin 8 is named "P9".
constexpr Binding Attenuator(int index, const char* caption, chip::RegisterField at) {
  return Check({"chkDisAtten", index}, caption, at, Sense::Inverted);
}

constexpr std::array kRows{
    Attenuator(0, "Disable Attenuators on Pin7", At("Attenuators 1 En", "P7")),
    Attenuator(1, "Disable Attenuators on Pin8", At("Attenuators 1 En", "P9")),
    Attenuator(2, "Disable Attenuators on Pin13", At("Attenuators 1 En", "P13")),
    Attenuator(3, "Disable Attenuators on Pin15", At("Attenuators 1 En", "P15")),
    Attenuator(4, "Disable Attenuators on Pin19", At("Attenuators 1 En", "P19")),
    Attenuator(5, "Disable Attenuators on Pin21", At("Attenuators 1 En", "P21")),
    Attenuator(6, "Disable Attenuators on Pin22", At("Attenuators 1 En", "P22")),
    Attenuator(7, "Disable Attenuators on Pin23", At("Attenuators 2 En", "P23")),
    Attenuator(8, "Disable Attenuators on Pin24", At("Attenuators 2 En", "P24")),
    Attenuator(9, "Disable Attenuators on Pin25", At("Attenuators 2 En", "P25")),
    Attenuator(10, "Disable Attenuators on Pin26", At("Attenuators 2 En", "P26")),
    Attenuator(11, "Disable Attenuators on Pin28", At("Attenuators 2 En", "P28")),
    Attenuator(12, "Disable Attenuators on Pin29", At("Attenuators 2 En", "P29")),
};
constexpr std::array kReads{Read("Attenuators 1 En"_reg, 2)};
constexpr std::array kWrites{Whole("Attenuators 1 En"_reg), Whole("Attenuators 2 En"_reg)};
static_assert(IsSound(kRows, kReads, kWrites));

}  // namespace

frmVoltConfig::frmVoltConfig(const Context& context)
    : ConfigWindow("frmVoltConfig", "Voltage Configuration", context, {kRows, kReads, kWrites}) {
  QGroupBox* frame = MakeFrame("Frame1", "", this);
  BuildRows(GridOf(*frame), kRows);
  Finish(frame);
}

}  // namespace zth::windows
