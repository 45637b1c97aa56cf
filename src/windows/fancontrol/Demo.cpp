#include "windows/fancontrol/Demo.h"

#include <array>
#include <cstdint>

#include "chip/Measurements.h"
#include "chip/PinModel.h"
#include "link/Declarations.h"
#include "link/USBStuff.h"
#include "windows/SharedState.h"

namespace zth::windows {
namespace {

constexpr std::int32_t kRemote2Therm2Limit = 0x52;
constexpr std::int32_t kZeroDegrees = 0x40;
constexpr std::int32_t kNinetyDegrees = 0x9A;

/// One write of the set-up: the register's own bits of `keep`, and `set`. With nothing to keep it is not read.
struct DemoWrite {
  std::uint8_t reg;
  std::uint8_t keep;
  std::uint8_t set;
};

constexpr std::array kDemoWrites{
    // All four PWMs follow Remote2.
    DemoWrite{0x21, 0x1F, 0x40},
    DemoWrite{0x22, 0x1F, 0x40},
    DemoWrite{0x23, 0x1F, 0x40},
    DemoWrite{0x24, 0x1F, 0x40},
    // THERM2 leaves the fans alone; full duty; two tach pulses; tachs 1 to 4.
    DemoWrite{0x0D, 0xFF, 0x02},
    DemoWrite{0x2C, 0x00, 0xFF},
    DemoWrite{0x02, 0x3F, 0x40},
    DemoWrite{0x07, 0xF0, 0x0F},
    // THERM2 on Remote2, and nothing of it on the alert output.
    DemoWrite{0x0F, 0xFF, 0x08},
    DemoWrite{0x0F, 0xFF, 0x01},
    DemoWrite{0x30, 0xFF, 0x90},
    DemoWrite{0x33, 0xFF, 0x20},
    // Dynamic Tmin on Remote2; THERM2 loads its operating point.
    DemoWrite{0x0B, 0xFF, 0x02},
    DemoWrite{0x0B, 0xFF, 0x20},
    // Operating point hysteresis, Tmin hysteresis, THERM2 limit, Trange.
    DemoWrite{0x64, 0x0F, 0x20},
    DemoWrite{0x62, 0xF0, 0x02},
    DemoWrite{kRemote2Therm2Limit, 0x00, kNinetyDegrees},
    DemoWrite{0x62, 0x0F, 0xB0},
    // Operating point 85, Tmin 40, limits 31 and 45 degrees.
    DemoWrite{0x5B, 0x00, 0x95},
    DemoWrite{0x5E, 0x00, 0x68},
    DemoWrite{0x46, 0x00, 0x5F},
    DemoWrite{0x4A, 0x00, 0x6D},
    DemoWrite{0x01, 0x0F, 0x20},
};

/// "D2+ ( Pin17)" and "D2- ( Pin18)".
constexpr int kRemote2Switches = 0x03;

/// How much warmer Remote2 is drawn, and the drawn temperature of the THERM2 event.
constexpr int kLift = 15;
constexpr float kTripDegrees = 50.0F;
constexpr float kPulseMs = 500.0F;

constexpr std::size_t kRemote2 = 2;
constexpr int kTemperaturePhase = 0;
constexpr int kDynamicTminPhase = 5;

void Lift(std::int16_t& value) {
  value = static_cast<std::int16_t>(value + kLift);
}

/// The limit stands far below the temperature for a while, then as the set-up left it.
void PulseTherm2(platform::Services& services) {
  services.events.PumpPaint();  // nothing is drawn during the pulse
  link::WriteRegisterValue(link::DeviceAddress, kRemote2Therm2Limit, kZeroDegrees);
  services.clock.WaitMs(kPulseMs);
  link::WriteRegisterValue(link::DeviceAddress, kRemote2Therm2Limit, kNinetyDegrees);
  DemoThermTripped = true;
}

}  // namespace

void SetUpDemo() {
  const std::int16_t port = link::ReadBoardPort(chip::kSwitchDevice0);
  link::WriteBoardPortUnchecked(chip::kSwitchDevice0, port & 0xFF & ~kRemote2Switches);
  for (const DemoWrite& write : kDemoWrites) {
    int value = write.set;
    if (write.keep != 0) value |= link::ReadRegister(link::DeviceAddress, write.reg) & write.keep;
    link::WriteRegisterValue(link::DeviceAddress, write.reg, value);
  }
}

void AdjustForDemo(int phase, platform::Services& services) {
  if (!DemoRunning) return;
  chip::MeasurementSet& live = chip::Measurements;
  if (phase == kTemperaturePhase) live.Temperature[kRemote2] += static_cast<float>(kLift);
  if (phase != kDynamicTminPhase) return;
  Lift(live.PolledTmin[kRemote2]);
  Lift(live.PolledOpPoint[kRemote2]);
  Lift(live.PolledLowLimit[kRemote2]);
  Lift(live.PolledHighLimit[kRemote2]);
  if (!DemoThermTripped && live.Temperature[kRemote2] >= kTripDegrees) PulseTherm2(services);
}

}  // namespace zth::windows
