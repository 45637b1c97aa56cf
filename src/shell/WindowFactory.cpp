#include "shell/WindowFactory.h"

#include <algorithm>
#include <array>

#include "shell/frmAbout.h"
#include "windows/board/frmHeaters.h"
#include "windows/board/frmSwitches.h"
#include "windows/config/frmEDO.h"
#include "windows/config/frmEasySetup.h"
#include "windows/config/frmFanConfig.h"
#include "windows/config/frmGPIO.h"
#include "windows/config/frmGenConfig.h"
#include "windows/config/frmPinConfig.h"
#include "windows/config/frmTherm.h"
#include "windows/config/frmVoltConfig.h"
#include "windows/data/frmGraph.h"
#include "windows/data/frmLogging.h"
#include "windows/data/frmSave.h"
#include "windows/fancontrol/frmAutoGraph.h"
#include "windows/fancontrol/frmDynamicTmin.h"
#include "windows/fancontrol/frmManualControl.h"
#include "windows/guide/frmGuide.h"
#include "windows/limits/frmLimits.h"
#include "windows/regmap/frmRegMap.h"
#include "windows/tools/frmChanges.h"
#include "windows/tools/frmCompare.h"
#include "windows/tools/frmTraffic.h"

namespace zth::shell {
namespace {

using Maker = windows::ChildWindow* (*)(const windows::Context&);

struct Row {
  const char* name;
  Maker make;
};

template <typename Window>
windows::ChildWindow* Make(const windows::Context& context) {
  return new Window(context);
}

// One row for each window of the program.
constexpr std::array kWindows{
    Row{"frmAbout", Make<frmAbout>},
    Row{"frmAutoGraph", Make<windows::frmAutoGraph>},
    Row{"frmChanges", Make<windows::frmChanges>},
    Row{"frmCompare", Make<windows::frmCompare>},
    Row{"frmDynamicTmin", Make<windows::frmDynamicTmin>},
    Row{"frmEDO", Make<windows::frmEDO>},
    Row{"frmEasySetup", Make<windows::frmEasySetup>},
    Row{"frmFanConfig", Make<windows::frmFanConfig>},
    Row{"frmGPIO", Make<windows::frmGPIO>},
    Row{"frmGenConfig", Make<windows::frmGenConfig>},
    Row{"frmGraph", Make<windows::frmGraph>},
    Row{"frmGuide", Make<windows::frmGuide>},
    Row{"frmHeaters", Make<windows::frmHeaters>},
    Row{"frmLimits", Make<windows::frmLimits>},
    Row{"frmLogging", Make<windows::frmLogging>},
    Row{"frmManualControl", Make<windows::frmManualControl>},
    Row{"frmPinConfig", Make<windows::frmPinConfig>},
    Row{"frmRegMap", Make<windows::frmRegMap>},
    Row{"frmSave", Make<windows::frmSave>},
    Row{"frmSwitches", Make<windows::frmSwitches>},
    Row{"frmTherm", Make<windows::frmTherm>},
    Row{"frmTraffic", Make<windows::frmTraffic>},
    Row{"frmVoltConfig", Make<windows::frmVoltConfig>},
};

const Row* FindRow(const QString& name) {
  const auto* row = std::find_if(kWindows.begin(), kWindows.end(), [&](const Row& r) { return name == r.name; });
  return row == kWindows.end() ? nullptr : row;
}

}  // namespace

bool WindowExists(const QString& name) {
  return FindRow(name) != nullptr;
}

windows::ChildWindow* MakeWindow(const QString& name, const windows::Context& context) {
  const Row* row = FindRow(name);
  return row == nullptr ? nullptr : row->make(context);
}

}  // namespace zth::shell
