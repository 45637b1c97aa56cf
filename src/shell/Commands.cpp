#include "shell/Commands.h"

namespace zth::shell {

const std::array<Menu, 7> kMenus{{
    {"mnuFile", "&File"},
    {"mnuView", "&View"},
    {"mnuConfig", "&Configuration"},
    {"mnuFanControl", "Fan C&ontrol"},
    {"mnuBoard", "&Hardware"},
    {"mnuTools", "&Tools"},
    {"mnuWindow", "&Window"},
}};

// clang-format off
const std::array<MenuEntry, 25> kMenuEntries{{
    {"mnuFile", "mnuSave", "&Save/Recall Configuration", "Ctrl+S", "frmSave"},
    {"mnuFile", "mnuLog", "&Log Data to File", "Ctrl+L", "frmLogging"},
    {"mnuFile", "mnuExit", "E&xit", "Ctrl+Q", ""},
    {"mnuView", "mnuRegMap", "&Register Map", "Ctrl+R", "frmRegMap"},
    {"mnuView", "mnuGraph", "&Graphs", "Ctrl+G", "frmGraph"},
    {"mnuView", "mnuLimits", "&Limits/Interrupts", "Ctrl+I", "frmLimits"},
    {"mnuConfig", "mnuEasySetup", "&Easy Setup", "Ctrl+1", "frmEasySetup"},
    {"mnuConfig", "mnuFanConfig", "&Fan Configuration", "Ctrl+2", "frmFanConfig"},
    {"mnuConfig", "mnuGenConfig", "&General Configuration", "Ctrl+3", "frmGenConfig"},
    {"mnuConfig", "mnuPinConfig", "&Pin Configuration", "Ctrl+4", "frmPinConfig"},
    {"mnuConfig", "mnuVoltage", "&Voltage Configuration", "Ctrl+5", "frmVoltConfig"},
    {"mnuConfig", "mnuTHERM", "&THERM Configuration", "Ctrl+6", "frmTherm"},
    {"mnuConfig", "mnuGPIO", "GP&IO Configuration", "Ctrl+7", "frmGPIO"},
    {"mnuConfig", "mnuEDO", "E&DO Configuration", "Ctrl+8", "frmEDO"},
    {"mnuFanControl", "mnuAutoControl", "&Automatic Fan Control", "Ctrl+Shift+A", "frmAutoGraph"},
    {"mnuFanControl", "mnuDynTmin", "&Dynamic Tmin Control", "Ctrl+Shift+D", "frmDynamicTmin"},
    {"mnuFanControl", "mnuManualControl", "&Manual Control", "Ctrl+Shift+M", "frmManualControl"},
    {"mnuBoard", "mnuHeaters", "&Heaters", "Ctrl+Shift+H", "frmHeaters"},
    {"mnuBoard", "mnuSwitches", "&Switches", "Ctrl+Shift+S", "frmSwitches"},
    {"mnuTools", "mnuTraffic", "&Bus Traffic", "Ctrl+T", "frmTraffic"},
    {"mnuTools", "mnuChanges", "&Session Changes", "Ctrl+J", "frmChanges"},
    {"mnuTools", "mnuCompare", "&Compare Configurations", "Ctrl+D", "frmCompare"},
    {"mnuTools", "mnuUndo", "&Undo Last Action", "Ctrl+Z", ""},
    {"mnuWindow", "mnuGuide", "&User's Guide", "F1", "frmGuide"},
    {"", "mnuAbout", "&About...", "", "frmAbout"},
}};
// clang-format on

const std::array<ToolButton, 10> kToolButtons{{
    {"Save", "Save/Recall Configuration", "frmSave"},
    {"FanConfig", "Fan Configuration", "frmFanConfig"},
    {"Graphs", "Graphs", "frmGraph"},
    {"RegMap", "Register Map", "frmRegMap"},
    {"Switches", "On-board Switches", "frmSwitches"},
    {"GeneralConfig", "General Configuration", "frmGenConfig"},
    {"GPIO", "GPIO", "frmGPIO"},
    {"Heaters", "Heaters", "frmHeaters"},
    {"AutoControl", "Automatic Fan Control", "frmAutoGraph"},
    {"Alerts", "Limits/Interrupts", "frmLimits"},
}};

}  // namespace zth::shell
