#include "windows/config/frmGenConfig.h"

#include <array>

#include <QGroupBox>

#include "windows/Rows.h"

namespace zth::windows {
namespace {

constexpr std::array kMonitoring{
    Check("chkEnableMonitoring", "Enable Temp/Voltage &Monitoring", At("Configuration 1", "MON")),
    Check("chkEnVoltAve", "Enable Voltage Avera&ging", At("Configuration 1", "AVGV")),
    Check("chkEnTempAve", "Enable Temperat&ure Averaging", At("Configuration 1", "AVGT")),
};
constexpr std::array kChip{
    Check("chkAlertMode", "A&LERT mode = SMBus ", At("Configuration 1", "ALT"), Sense::Inverted),
    Check("chkSetupComplete", "&Setup Complete", chip::kSetupComplete),
    Check("chkShutDown", "Shut&down the ZTH4718", At("Configuration 2", "Shdn")),
};
// The bits of "Configuration 3" are given by number: their names in the table do not tell what they do.
constexpr std::array kBus{
    Check("chkEnSCLTmout", "&Enable SCL Timeout", "Configuration 3"_reg, 1),
    Check("chkEnSDATmout", "E&nable SDA Timeout", "Configuration 3"_reg, 2),
};
constexpr std::array kControl{
    Check("chkVIDThreshold", "Ena&ble Low VID Threshold", "Configuration 3"_reg, 3),
    Check("chkVcore", "Enable Vco&re_Low", "Configuration 3"_reg, 7),
    Check("chkConLoop", "Enable Bac&kwards Compatible Control Loop", At("Tmin_Cal2", "Ver"), Sense::Inverted),
};
constexpr auto kRows = Joined(kMonitoring, kChip, kBus, kControl);
constexpr std::array kReads{Read("Configuration 1"_reg, 3), Read("Tmin_Cal2"_reg)};
constexpr std::array kWrites{Modify("Configuration 1"_reg), Modify("Configuration 2"_reg),
                             Modify("Configuration 3"_reg), Modify("Tmin_Cal2"_reg)};
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
