#include "windows/config/frmEDO.h"

#include <array>

#include <QGroupBox>
#include <QHBoxLayout>

#include "windows/Rows.h"

namespace zth::windows {
namespace {

// A ticked box masks the event. The boxes of the reserved bit 4 are hidden; they write back the value read.
constexpr std::array kEdo1{
    Check({"chkEDOEnable", 0}, "Enable EDO &1", At("EDO Enable", "EDO1")),
    Check({"chkEDO1Mask", 0}, "Mask GPIO1 EDO1 Event", At("EDO Mask 1", "GIO1")),
    Check({"chkEDO1Mask", 1}, "Mask GPIO2 EDO1 Event", At("EDO Mask 1", "GIO2")),
    Check({"chkEDO1Mask", 2}, "Mask GPIO3 EDO1 Event", At("EDO Mask 1", "DIO3")),
    Check({"chkEDO1Mask", 3}, "Mask GPIO4 EDO1 Event", At("EDO Mask 1", "GIO4")),
    Check({"chkEDO1Mask", 4}, nullptr, "EDO Mask 1"_reg, 4),
    Check({"chkEDO1Mask", 5}, "Mask Fan Status EDO1 Event", At("EDO Mask 1", "Fan")),
    Check({"chkEDO1Mask", 6}, "Mask THERM EDO1 Event", At("EDO Mask 1", "Temp")),
    Check({"chkEDO1Mask", 7}, "Mask Voltage EDO1 Event", At("EDO Mask 1", "Volt")),
};
constexpr std::array kEdo2{
    Check({"chkEDOEnable", 1}, "Enable EDO &2", At("EDO Enable", "EDO2")),
    Check({"chkEDO2Mask", 0}, "Mask GPIO1 EDO2 Event", At("EDO Mask 2", "GIO1")),
    Check({"chkEDO2Mask", 1}, "Mask GPIO2 EDO2 Event", At("EDO Mask 2", "GIO2")),
    Check({"chkEDO2Mask", 2}, "Mask GPIO3 EDO2 Event", At("EDO Mask 2", "DIO3")),
    Check({"chkEDO2Mask", 3}, "Mask GPIO4 EDO2 Event", At("EDO Mask 2", "GIO4")),
    Check({"chkEDO2Mask", 4}, nullptr, "EDO Mask 2"_reg, 4),
    Check({"chkEDO2Mask", 5}, "Mask Fan Status EDO2 Event", At("EDO Mask 2", "Fan")),
    Check({"chkEDO2Mask", 6}, "Mask THERM EDO2 Event", At("EDO Mask 2", "Temp")),
    Check({"chkEDO2Mask", 7}, "Mask Voltage EDO2 Event", At("EDO Mask 2", "Volt")),
};
constexpr auto kRows = Joined(kEdo1, kEdo2);
constexpr std::array kReads{Read("EDO Enable"_reg), Read("EDO Mask 1"_reg, 2)};
constexpr std::array kWrites{Modify("EDO Enable"_reg), Whole("EDO Mask 1"_reg), Whole("EDO Mask 2"_reg)};
static_assert(IsSound(kRows, kReads, kWrites));

}  // namespace

frmEDO::frmEDO(const Context& context) : ConfigWindow("frmEDO", "EDO Settings", context, {kRows, kReads, kWrites}) {
  auto* body = new QWidget(this);
  auto* row = new QHBoxLayout(body);
  row->setContentsMargins(0, 0, 0, 0);
  QGroupBox* edo1 = MakeFrame("Frame1", "EDO 1", body);
  QGroupBox* edo2 = MakeFrame("Frame2", "EDO 2", body);
  BuildRows(GridOf(*edo1), kEdo1);
  BuildRows(GridOf(*edo2), kEdo2);
  row->addWidget(edo1);
  row->addWidget(edo2);
  Finish(body);
}

}  // namespace zth::windows
