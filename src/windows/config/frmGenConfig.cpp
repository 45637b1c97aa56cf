#include "windows/config/frmGenConfig.h"

#include <array>

#include <QGroupBox>

#include "windows/Rows.h"

namespace zth::windows {
namespace {

constexpr std::array kMonitoring{
    Check("chkEnableMonitoring", "Enable Temp/Voltage &Monitoring", 0x01, 0),
    Check("chkEnVoltAve", "Enable Voltage Avera&ging", 0x01, 1),
    Check("chkEnTempAve", "Enable &Temperature Averaging", 0x01, 2),
};
constexpr std::array kChip{
    Check("chkAlertMode", "A&LERT mode = SMBus ", 0x01, 3, Sense::Inverted),
    Check("chkSetupComplete", "&Setup Complete", 0x01, 5),
    Check("chkShutDown", "Shut&down the ZTH4718", 0x02, 1),
};
constexpr std::array kBus{
    Check("chkEnSCLTmout", "&Enable SCL Timeout", 0x03, 1),
    Check("chkEnSDATmout", "E&nable SDA Timeout", 0x03, 2),
};
constexpr std::array kControl{
    Check("chkVIDThreshold", "Ena&ble Low VID Threshold", 0x03, 3),
    Check("chkVcore", "Enable Vco&re_Low", 0x03, 7),
    Check("chkConLoop", "Enable Bac&kwards Compatible Control Loop", 0x0C, 6, Sense::Inverted),
};
constexpr auto kRows = Joined(kMonitoring, kChip, kBus, kControl);
constexpr std::array kReads{Read(0x01, 3), Read(0x0C)};
constexpr std::array kWrites{Modify(0x01), Modify(0x02), Modify(0x03), Modify(0x0C)};
static_assert(IsSound(kRows, kReads, kWrites));

}  // namespace

frmGenConfig::frmGenConfig(const Context& context)
    : ConfigWindow("frmGenConfig", "General Configuration", context, {kRows, kReads, kWrites}) {
  QGroupBox* frame = MakeFrame("Frame1", "", this);
  BuildGroup(GridOf(*frame), "Monitoring", kMonitoring);
  BuildGroup(GridOf(*frame), "Chip", kChip);
  BuildGroup(GridOf(*frame), "Bus timeouts", kBus);
  BuildGroup(GridOf(*frame), "Thresholds and control", kControl);
  Finish(frame);
}

}  // namespace zth::windows
