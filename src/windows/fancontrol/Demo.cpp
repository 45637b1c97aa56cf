#include "windows/fancontrol/Demo.h"

#include <array>
#include <cstdint>

#include "base/BitField.h"
#include "chip/ChipState.h"
#include "chip/Conversions.h"
#include "chip/Measurements.h"
#include "chip/PinModel.h"
#include "chip/RegisterNames.h"
#include "link/Asker.h"
#include "link/Declarations.h"
#include "link/USBStuff.h"
#include "windows/SharedState.h"

namespace zth::windows {
namespace {

using chip::At;

constexpr std::uint8_t Degrees(int degrees) {
  return static_cast<std::uint8_t>(degrees + chip::kTemperatureOffset);
}

constexpr std::int32_t kRemote2Therm2Limit = "Remote 2 THERM2 Limit"_reg;
constexpr std::uint8_t kZeroDegrees = Degrees(0);
constexpr std::uint8_t kNinetyDegrees = Degrees(90);

/// One write of the set-up: replaces the bits of `own` by those of `set`. A register that is replaced completely is not
/// read.
struct DemoWrite {
  std::uint8_t reg;
  unsigned own;
  unsigned set;
};

constexpr DemoWrite Whole(std::int32_t reg, std::uint8_t value) {
  return {static_cast<std::uint8_t>(reg), 0xFF, value};
}
constexpr DemoWrite Put(chip::RegisterField at, unsigned value) {
  return {at.reg, base::Mask(at.bits), base::PutField(0, at.bits, value)};
}
constexpr DemoWrite Set(std::uint8_t reg, std::uint8_t bits) {
  return {reg, 0, bits};
}

constexpr unsigned kFollowsRemote2 = 2;

constexpr std::array kDemoWrites{
    // All four PWMs follow Remote2.
    Put({"PWM1 Config"_reg, chip::kBehaviour}, kFollowsRemote2),
    Put({"PWM2 Config"_reg, chip::kBehaviour}, kFollowsRemote2),
    Put({"PWM3 Config"_reg, chip::kBehaviour}, kFollowsRemote2),
    Put({"PWM4 Config"_reg, chip::kBehaviour}, kFollowsRemote2),
    // THERM2 does not affect the fans; full duty; two tach pulses; tachs 1 to 4.
    Put(At("THERM Configuration", "B2"), 1),
    Whole("PWM 1-4 Max"_reg, 255),
    Put(At("Configuration 2", "#FP"), 1),
    Put(chip::kTachs1To4, 0b1111),
    // THERM2 on Remote2, without the alert output.
    Put(At("Conf_Therm2", "R2"), 1),
    Put(At("Conf_Therm2", "T2E"), 1),
    Set("Thermal Mask 1"_reg, 0b1001'0000),
    Set("Voltage Mask 2"_reg, 0b0010'0000),
    // Dynamic Tmin on Remote2; THERM2 loads its operating point. The bits are given by number, as in frmDynamicTmin.
    Set("Tmin_Cal1"_reg, 0b0000'0010),
    Set("Tmin_Cal1"_reg, 0b0010'0000),
    // Operating point hysteresis, Tmin hysteresis, THERM2 limit, Trange "26.7°C".
    Put(At("Operating Point Hyst", "Hys"), 2),
    Put({"Remote 2 Trans/Hys"_reg, chip::kTminHyst}, 2),
    Whole(kRemote2Therm2Limit, kNinetyDegrees),
    Put({"Remote 2 Trans/Hys"_reg, chip::kTrange}, 11),
    Whole("Remote 2 Operating Point"_reg, Degrees(85)),
    Whole("Remote 2 Tmin"_reg, Degrees(40)),
    Whole("Remote 2 Low Limit"_reg, Degrees(31)),
    Whole("Remote 2 High Limit"_reg, Degrees(45)),
    // Only "set-up complete" of the high half.
    Put({"Configuration 1"_reg, {4, 4}}, 0b0010),
};

/// "D2+ ( Pin17)" and "D2- ( Pin18)".
constexpr int kRemote2Switches = 0b11;

/// Remote2 is drawn this much warmer; the drawn temperature that triggers the THERM2 event.
constexpr int kLift = 15;
constexpr float kTripDegrees = 50.0F;
constexpr float kPulseMs = 500.0F;

constexpr std::size_t kRemote2 = 2;
constexpr int kTemperaturePhase = 0;
constexpr int kDynamicTminPhase = 5;

void Lift(std::int16_t& value) {
  value = static_cast<std::int16_t>(value + kLift);
}

/// Sets the limit far below the temperature for a while, then restores the set-up's value.
void PulseTherm2(platform::Services& services) {
  const link::Asker demo(link::Asker::Kind::Part, [] { return "frmDynamicTmin demo"; });
  services.events.PumpPaint();  // nothing is drawn during the pulse
  link::WriteRegisterValue(link::Bus.DeviceAddress, kRemote2Therm2Limit, kZeroDegrees);
  services.clock.WaitMs(kPulseMs);
  link::WriteRegisterValue(link::Bus.DeviceAddress, kRemote2Therm2Limit, kNinetyDegrees);
  Shared.DemoThermTripped = true;
}

}  // namespace

void SetUpDemo() {
  Shared.DemoChip = link::ChipInUse();
  const std::int16_t port = link::ReadBoardPort(chip::kSwitchDevice0);
  link::WriteBoardPortUnchecked(chip::kSwitchDevice0, port & ~kRemote2Switches & 255);
  for (const DemoWrite& write : kDemoWrites) {
    if (write.own == 0xFF) {
      link::WriteRegisterValue(link::Bus.DeviceAddress, write.reg, static_cast<std::int32_t>(write.set));
    } else {
      link::ModifyRegister(link::Bus.DeviceAddress, write.reg, write.own, write.set);
    }
  }
}

void AdjustForDemo(int phase, platform::Services& services) {
  if (!Shared.DemoRunning || link::ChipInUse() != Shared.DemoChip) return;
  // A stale group keeps its old values, which have been lifted already.
  if (chip::IsStale(phase + 1)) return;
  chip::MeasurementSet& live = chip::Model.Measurements;
  if (phase == kTemperaturePhase) live.Temperature[kRemote2] += static_cast<float>(kLift);
  if (phase != kDynamicTminPhase) return;
  Lift(live.PolledTmin[kRemote2]);
  Lift(live.PolledOpPoint[kRemote2]);
  Lift(live.PolledLowLimit[kRemote2]);
  Lift(live.PolledHighLimit[kRemote2]);
  if (!Shared.DemoThermTripped && live.Temperature[kRemote2] >= kTripDegrees) PulseTherm2(services);
}

}  // namespace zth::windows
