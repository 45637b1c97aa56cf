#include "simulator/Board.h"

#include <algorithm>
#include <chrono>
#include <cstdint>

#include "simulator/ChipTime.h"

namespace zth::simulator {
namespace {

constexpr std::uint8_t kPort48 = 0x48;
constexpr std::uint8_t kPort4A = 0x4A;
enum Device { k48, k4A };

// A 3.05 V lithium cell on the battery input, which has a 4 V scale.
constexpr double kBatteryRatio = 3.05 / 4;

constexpr double kD2ChangeOverSeconds = 0.5;

}  // namespace

Board::Board(const BoardOptions& options)
    : options_(options), chip_(options.chip), plant_(options.plant), tachNoise_(options.plant.seed) {
  for (int sensor = 0; sensor < kTemperatures; ++sensor) sensedC_[At(sensor)] = plant_.TemperatureC(sensor);
}

void Board::Advance(std::chrono::nanoseconds elapsed) {
  for (pending_ += elapsed; pending_ >= kTick; pending_ -= kTick) Tick();
}

void Board::Tick() {
  for (int pin = 0; pin < kVoltagePins; ++pin) {
    plant_.SetSupplyFactor(static_cast<VoltagePin>(pin), faults_.supplyFactor[At(pin)]);
  }
  plant_.SetAmbient(faults_.ambientC.value_or(options_.plant.ambientC) + faults_.ambientDriftC);
  DriveFans();
  DriveHeaters();
  plant_.Step(kTickSeconds);
  chip_.Tick(Inputs());
}

void Board::DriveFans() {
  const PinOutputs outputs = chip_.Outputs();
  for (int fan = 0; fan < kTachs; ++fan) {
    const int pwm = fan % kPwms;
    // Switches disconnect the first two outputs. A fan without a control signal pulls its input up and runs at full
    // speed.
    const bool connected = pwm >= 2 || Closed(k4A, 4 + pwm);
    plant_.SetFanDrive(fan, connected ? outputs.pwmHigh[At(pwm)].value_or(1.0) : 1.0);
    plant_.SetFanBlocked(fan, faults_.fanStalled[At(fan)]);
    plant_.SetFanWear(fan, faults_.fanShare[At(fan)]);
  }
}

void Board::DriveHeaters() {
  for (int heater = 0; heater < kHeaters; ++heater) {
    const double stuck = faults_.heaterStuck[At(heater)];
    plant_.SetHeater(heater, stuck >= 0 ? stuck : heaterPercent_[At(heater)] / 100.0);
  }
}

bool Board::D2Open() {
  const bool onBoard = Closed(k4A, 0) && Closed(k4A, 1);
  if (!options_.diodeAtD2Connector) return !onBoard;
  if (onBoard != d2OnBoard_) d2ChangeOverTicks_ = Ticks(kD2ChangeOverSeconds);
  d2OnBoard_ = onBoard;
  return d2ChangeOverTicks_ > 0 && d2ChangeOverTicks_-- > 0;
}

double Board::SensedC(int sensor) {
  double& sensed = sensedC_[At(sensor)];
  if (!faults_.sensorFrozen[At(sensor)]) sensed = plant_.TemperatureC(sensor) + faults_.sensorDriftC[At(sensor)];
  return sensed;
}

double Board::PulsesAt(int fan) {
  const double noise = faults_.tachNoise[At(fan)];
  // A healthy tach draws no random numbers, so that a fault changes no other reading of the board.
  const double jitter = noise > 0 ? tachNoise_.Spread(noise) : 0;
  return plant_.PulsesPerMinute(fan) * (1 - faults_.tachLost[At(fan)]) * (1 + jitter);
}

PinInputs Board::Inputs() {
  PinInputs inputs;
  for (int sensor = 0; sensor < kTemperatures; ++sensor) {
    inputs.temperatureC[At(sensor)] = SensedC(sensor);
    inputs.diodeOpen[At(sensor)] = faults_.diodeOpen[At(sensor)];
  }
  inputs.diodeOpen[2] = D2Open() || inputs.diodeOpen[2];
  for (int i = 0; i < 2; ++i) inputs.thermLow[At(i)] = faults_.thermPulledLow[At(i)] && Closed(k4A, 2 + i);
  inputs.vrHot = faults_.vrHot;
  inputs.pin27Asserted = faults_.pin27Asserted;
  for (int i = 0; i < kGpios; ++i) inputs.gpioHigh[At(i)] = !faults_.gpioPulledLow[At(i)];

  inputs.vid = faults_.vid;

  for (int fan = 0; fan < kTachs; ++fan) {
    const bool connected = fan >= 4 || Closed(k48, fan);
    inputs.pulsesPerMinute[At(fan)] = connected ? PulsesAt(fan) : 0;
  }

  for (int n = 0; n < kVoltagePins; ++n) {
    const auto pin = static_cast<VoltagePin>(n);
    // A pin gets the supply that its function expects, as if the board's jumpers were set correctly.
    double nominal = chip_.Pins().Nominal(pin);
    if (nominal <= 0 && pin >= VoltagePin::P28) nominal = 1.5;
    if (pin == VoltagePin::P26 && nominal == 4) nominal *= kBatteryRatio;
    const bool switched = pin >= VoltagePin::P23 && pin <= VoltagePin::P26;
    const bool connected = !switched || Closed(k48, 4 + n - static_cast<int>(VoltagePin::P23));
    inputs.volts[At(n)] = connected ? nominal * plant_.SupplyRatio(pin) : 0;
  }
  return inputs;
}

bool Board::SetHeater(int heater, int percent) {
  if (heater < 1 || heater > kHeaters) return false;
  heaterPercent_[At(heater - 1)] = std::clamp(percent, 0, 100);
  return true;
}

std::uint8_t Board::HeaterState(int heater) const {
  return static_cast<std::uint8_t>(2 * heaterPercent_[At(heater - 1)]);
}

bool Board::WritePort(std::uint8_t address, std::uint8_t port) {
  if (!options_.switches || (address != kPort48 && address != kPort4A)) return false;
  ports_[address == kPort48 ? k48 : k4A] = port;
  return true;
}

bool Board::ReadPort(std::uint8_t address, std::uint8_t& port) const {
  if (!options_.switches || (address != kPort48 && address != kPort4A)) return false;
  port = ports_[address == kPort48 ? k48 : k4A];
  return true;
}

}  // namespace zth::simulator
