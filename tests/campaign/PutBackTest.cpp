// A session of random edits over all windows, and then everything put back as it was found.
#include <random>

#include <QComboBox>

#include "chip/ChipState.h"
#include "chip/WriteEffects.h"
#include "link/Declarations.h"
#include "tasks/ChangeWords.h"
#include "tasks/TasksState.h"
#include "tests/campaign/Operate.h"
#include "tests/support/SimulatedDesk.h"

namespace zth::testing {
namespace {

using Map = std::array<std::uint8_t, 256>;

/// The windows whose controls write the chip's registers.
constexpr std::array kWindows{"frmRegMap",    "frmLimits",      "frmEasySetup",    "frmFanConfig", "frmGenConfig",
                              "frmPinConfig", "frmVoltConfig",  "frmTherm",        "frmGPIO",      "frmEDO",
                              "frmAutoGraph", "frmDynamicTmin", "frmManualControl"};

class PutBackTest : public ::testing::TestWithParam<unsigned> {
 protected:
  PutBackTest() : random_(GetParam()) {
    desk().fileDialogs.script.assign(5000, QString());
    desk().prompts.whileShown = [this] { desk().prompts.script = {platform::BoxAnswer::Ok}; };
    desk().Start();
  }

  Desk& desk() { return sim_.desk; }
  int Below(int n) { return static_cast<int>(random_() % static_cast<unsigned>(n)); }

  Map Registers() {
    sim_.CatchUp();
    Map map{};
    for (unsigned reg = 0; reg < map.size(); ++reg) map[reg] = sim_.Register(static_cast<std::uint8_t>(reg));
    return map;
  }

  void Edit() {
    auto* window = desk().Main().OpenWindow(kWindows[static_cast<std::size_t>(Below(kWindows.size()))]);
    const auto controls = OperableControls(*window);
    if (controls.empty()) return;
    const auto ways =
        WaysToOperate(*controls[static_cast<std::size_t>(Below(static_cast<int>(controls.size())))], Extent::All);
    if (!ways.empty()) ways[static_cast<std::size_t>(Below(static_cast<int>(ways.size())))].act();
    Desk::Settle();
    desk().clock.Advance(Below(400));
  }

  SimulatedDesk sim_;
  std::mt19937 random_;
};

TEST_P(PutBackTest, EveryRegisterThatIsNotListedIsAsItWasFound) {
  const Map found = Registers();
  for (int edit = 0; edit < 1000; ++edit) Edit();
  desk().fileDialogs.script.clear();
  ASSERT_FALSE(tasks::Work.journal->Actions().empty());
  const tasks::ChipKey chip{link::Bus.InterfaceMode, static_cast<std::uint8_t>(link::Bus.DeviceAddress)};
  const auto plan = tasks::PlanPutBack(tasks::Work.journal->ChangesOf(chip));
  const Map edited = Registers();
  auto left = tasks::RunPutBack(plan);
  left.insert(left.end(), plan.left.begin(), plan.left.end());
  Map map = Registers();
  int differing = 0;
  for (const tasks::Left& one : left) {
    map[one.reg] = static_cast<std::uint8_t>((map[one.reg] & ~one.mask) | (found[one.reg] & one.mask));
  }
  for (unsigned reg = 0; reg < map.size(); ++reg) {
    const auto address = static_cast<std::uint8_t>(reg);
    const bool isDuty = reg >= "PWM 1 Value"_reg && reg <= "PWM 4 Value"_reg;
    const bool isManual = isDuty && found[reg - "PWM 1 Value"_reg + "PWM1 Config"_reg] >> 5 == 7;
    if (chip::BitsNotPutBack(address) == 0xFF || (isDuty && !isManual)) continue;
    differing += edited[reg] != found[reg];
    EXPECT_EQ(map[reg], found[reg]) << tasks::RegisterWords(address) << " edited " << int{edited[reg]};
  }
  EXPECT_GT(differing, 30);
  EXPECT_LT(left.size(), 8U) << "most registers can be put back";
}

INSTANTIATE_TEST_SUITE_P(Seeds, PutBackTest, ::testing::Range(1U, 4U));

}  // namespace
}  // namespace zth::testing
