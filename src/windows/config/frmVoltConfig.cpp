#include "windows/config/frmVoltConfig.h"

#include <array>

#include <QGroupBox>

#include "windows/Rows.h"

namespace zth::windows {
namespace {

// The registers enable, the captions disable: ticked is 0. Bit 0 of 0x18 and bits 7:6 of 0x19 have no box.
constexpr Binding Attenuator(int index, const char* caption, int reg, int bit) {
  return Check({"chkDisAtten", index}, caption, reg, bit, Sense::Inverted);
}

constexpr std::array kRows{
    Attenuator(0, "Disable Attenuators on Pin7", 0x18, 1),   Attenuator(1, "Disable Attenuators on Pin8", 0x18, 2),
    Attenuator(2, "Disable Attenuators on Pin13", 0x18, 3),  Attenuator(3, "Disable Attenuators on Pin15", 0x18, 4),
    Attenuator(4, "Disable Attenuators on Pin19", 0x18, 5),  Attenuator(5, "Disable Attenuators on Pin21", 0x18, 6),
    Attenuator(6, "Disable Attenuators on Pin22", 0x18, 7),  Attenuator(7, "Disable Attenuators on Pin23", 0x19, 0),
    Attenuator(8, "Disable Attenuators on Pin24", 0x19, 1),  Attenuator(9, "Disable Attenuators on Pin25", 0x19, 2),
    Attenuator(10, "Disable Attenuators on Pin26", 0x19, 3), Attenuator(11, "Disable Attenuators on Pin28", 0x19, 4),
    Attenuator(12, "Disable Attenuators on Pin29", 0x19, 5),
};
constexpr std::array kReads{Read(0x18, 2)};
constexpr std::array kWrites{Whole(0x18), Whole(0x19)};
static_assert(IsSound(kRows, kReads, kWrites));

}  // namespace

frmVoltConfig::frmVoltConfig(const Context& context)
    : ConfigWindow("frmVoltConfig", "Voltage Configuration", context, {kRows, kReads, kWrites}) {
  QGroupBox* frame = MakeFrame("Frame1", "", this);
  BuildRows(GridOf(*frame), kRows);
  Finish(frame);
}

}  // namespace zth::windows
