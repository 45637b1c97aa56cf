#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <string>

#include <gtest/gtest.h>

#include "characterise/Characteriser.h"
#include "chip/ChipState.h"
#include "chip/PinModel.h"
#include "chip/PwmModes.h"
#include "link/Declarations.h"
#include "link/LinkErrors.h"
#include "tasks/RegisterImage.h"
#include "tasks/TasksState.h"
#include "tests/support/SimulatedDesk.h"

namespace zth::testing {

/// A run on the simulated board, in virtual time and without the program: nobody else reads the chip.
class Rig {
 public:
  static constexpr int kTickMs = 50;

  explicit Rig(const std::string& settings = {}, std::int16_t mode = link::kModeUsb)
      : sim((mode == link::kModeUsb ? "smbus = none\n" : "usb = none\n") + settings) {
    link::Bus = {};
    chip::Model = {};
    tasks::Work = {};
    link::Attach(sim.desk.services, [] {});
    link::Bus.observer = tasks::Work.traffic.get();
    link::LoadUsbFunctions(sim.desk.libraries);
    link::LoadSmbus(sim.desk.libraries);
    link::Bus.InterfaceMode = mode;
    link::Bus.DeviceAddress = mode == link::kModeUsb ? 0x58 : 0x2C;
    chip::EnterPwmHooks();
    chip::InitRegisterTable();
    chip::InitVoltageNames();
    chip::Model.TachClock = 90000;
    chip::ReadPinConfiguration();
    engine = std::make_unique<characterise::Characteriser>(sim.desk.services);
  }
  ~Rig() {
    engine.reset();
    link::Bus = {};
    chip::Model = {};
    tasks::Work = {};
  }
  Rig(const Rig&) = delete;
  Rig& operator=(const Rig&) = delete;

  /// All settings of the chip and the heaters, without the link.
  std::array<int, 258> Found() {
    sim.CatchUp();
    std::array<int, 258> found{};
    found.fill(-1);
    for (const std::uint8_t reg : tasks::ComparableRegisters()) found.at(reg) = Byte(reg);
    // A duty is a setting in manual mode only.
    for (unsigned pwm = 0; pwm < chip::kPwmChannels; ++pwm) {
      if (Byte(0x21 + pwm) >> 5 != 7) found.at(0xAA + pwm) = -1;
    }
    for (int heater = 1; heater <= 2 && sim.usb.TheBus().First() != nullptr; ++heater) {
      found.at(255 + static_cast<std::size_t>(heater)) = sim.usb.TheBus().First()->HeaterState(heater);
    }
    return found;
  }

  /// Runs until it has ended, or for that many ticks.
  const characterise::Characterisation& Run(const characterise::Settings& settings, int ticks = 1'000'000) {
    engine->Start(settings);
    return GoOn(ticks);
  }
  const characterise::Characterisation& GoOn(int ticks = 1'000'000) {
    for (int i = 0; i < ticks && engine->IsRunning(); ++i) {
      sim.desk.clock.WaitMs(kTickMs);
      engine->Tick();
    }
    return engine->Data();
  }

  SimulatedDesk sim;
  std::unique_ptr<characterise::Characteriser> engine;

 private:
  int Byte(unsigned reg) {
    const bool onUsb = link::Bus.InterfaceMode == link::kModeUsb;
    simulator::Bus& bus = onUsb ? sim.usb.TheBus() : sim.smbus.TheBus();
    return bus.Read(onUsb ? 0x58 : 0x2C, static_cast<std::uint8_t>(reg));
  }
};

}  // namespace zth::testing
