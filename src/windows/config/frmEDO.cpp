#include "windows/config/frmEDO.h"

#include <array>

#include <QGroupBox>
#include <QHBoxLayout>

#include "windows/Rows.h"

namespace zth::windows {
namespace {

// Ticked masks the event. The boxes of the reserved bit 4 are hidden: they give back what was read.
constexpr std::array kEdo1{
    Check({"chkEDOEnable", 0}, "Enable EDO &1", 0x16, 0),
    Check({"chkEDO1Mask", 0}, "Mask GPIO1 EDO1 Event", 0x37, 0),
    Check({"chkEDO1Mask", 1}, "Mask GPIO2 EDO1 Event", 0x37, 1),
    Check({"chkEDO1Mask", 2}, "Mask GPIO3 EDO1 Event", 0x37, 2),
    Check({"chkEDO1Mask", 3}, "Mask GPIO4 EDO1 Event", 0x37, 3),
    Check({"chkEDO1Mask", 4}, nullptr, 0x37, 4),
    Check({"chkEDO1Mask", 5}, "Mask Fan Status EDO1 Event", 0x37, 5),
    Check({"chkEDO1Mask", 6}, "Mask THERM EDO1 Event", 0x37, 6),
    Check({"chkEDO1Mask", 7}, "Mask Voltage EDO1 Event", 0x37, 7),
};
constexpr std::array kEdo2{
    Check({"chkEDOEnable", 1}, "Enable EDO &2", 0x16, 1),
    Check({"chkEDO2Mask", 0}, "Mask GPIO1 EDO2 Event", 0x38, 0),
    Check({"chkEDO2Mask", 1}, "Mask GPIO2 EDO2 Event", 0x38, 1),
    Check({"chkEDO2Mask", 2}, "Mask GPIO3 EDO2 Event", 0x38, 2),
    Check({"chkEDO2Mask", 3}, "Mask GPIO4 EDO2 Event", 0x38, 3),
    Check({"chkEDO2Mask", 4}, nullptr, 0x38, 4),
    Check({"chkEDO2Mask", 5}, "Mask Fan Status EDO2 Event", 0x38, 5),
    Check({"chkEDO2Mask", 6}, "Mask THERM EDO2 Event", 0x38, 6),
    Check({"chkEDO2Mask", 7}, "Mask Voltage EDO2 Event", 0x38, 7),
};
constexpr auto kRows = Joined(kEdo1, kEdo2);
constexpr std::array kReads{Read(0x16), Read(0x37, 2)};
constexpr std::array kWrites{Modify(0x16), Whole(0x37), Whole(0x38)};
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
