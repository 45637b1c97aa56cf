#pragma once

#include <array>
#include <chrono>
#include <cstdint>
#include <optional>

#include "simulator/Chip.h"
#include "simulator/Noise.h"
#include "simulator/PinInputs.h"
#include "simulator/Plant.h"

namespace zth::simulator {

/// How a board is equipped.
struct BoardOptions {
  ChipOptions chip{};
  PlantOptions plant{};
  /// The board has the two ADG715s. Without them every connection is permanently closed.
  bool switches = true;
  /// A second diode at the same spot is plugged into the D2 connector. Half a second after the D2 switches have
  /// disconnected the board's own diode, the second one takes over; until then the chip sees an open diode. Without it,
  /// that fault stays.
  bool diodeAtD2Connector = true;
};

/// Present faults of the board, and outside influences on it.
struct BoardFaults {
  std::array<bool, kTachs> fanStalled{};
  std::array<double, kHeaters> heaterStuck{-1, -1};  ///< drive, 0 to 1, that the heater is stuck at; negative for none
  std::array<bool, kTemperatures> diodeOpen{};
  std::array<double, kVoltagePins> supplyFactor{1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1};
  std::array<bool, 2> thermPulledLow{};  ///< beyond the THERM switches: no effect while they are open
  std::array<bool, 2> vrHot{};
  bool pin27Asserted = false;
  std::array<bool, kGpios> gpioPulledLow{};
  std::array<double, kTachs> fanShare{1, 1, 1, 1, 1, 1, 1, 1};  ///< share of the healthy speed, for a worn fan
  std::array<double, kTachs> tachNoise{};                       ///< pulses come early or late by up to this share
  std::array<double, kTachs> tachLost{};                        ///< share of the pulses that are missing
  std::array<double, kTemperatures> sensorDriftC{};             ///< error of the sensor
  std::array<bool, kTemperatures> sensorFrozen{};  ///< the sensor keeps the value it had when the fault began
  std::optional<double> ambientC;                  ///< overrides the air temperature of the options
  double ambientDriftC = 0;                        ///< added to the air temperature
  std::uint8_t vid = 0x3F;                         ///< levels on the VID pins, which are pulled up
};

/// The evaluation board: the chip, its physical environment, the two octal switches and the two heaters. Time is driven
/// from outside.
class Board {
 public:
  explicit Board(const BoardOptions& options = {});

  /// Advances time. Runs whole ticks of kTick and keeps the rest for the next call, so that splitting a period into
  /// several calls changes nothing.
  void Advance(std::chrono::nanoseconds elapsed);

  Chip& TheChip() { return chip_; }
  const Chip& TheChip() const { return chip_; }
  const Plant& ThePlant() const { return plant_; }

  /// Sets heater 1 or 2 to 0 to 100 percent. False for any other heater number.
  bool SetHeater(int heater, int percent);
  /// The adapter's state byte of heater 1 or 2: twice the percentage set.
  std::uint8_t HeaterState(int heater) const;

  /// Writes the port of the ADG715 at 0x48 or 0x4A; a 1 bit closes a switch. False if there is none.
  bool WritePort(std::uint8_t address, std::uint8_t port);
  /// Reads the port back. False if there is none.
  bool ReadPort(std::uint8_t address, std::uint8_t& port) const;

  void SetFaults(const BoardFaults& faults) { faults_ = faults; }

 private:
  void Tick();
  void DriveFans();
  void DriveHeaters();
  PinInputs Inputs();
  double SensedC(int sensor);
  double PulsesAt(int fan);
  bool D2Open();
  bool Closed(int device, int bit) const { return !options_.switches || (ports_[At(device)] >> bit & 1) != 0; }

  BoardOptions options_;
  Chip chip_;
  Plant plant_;
  BoardFaults faults_;
  Noise tachNoise_;
  std::array<double, kTemperatures> sensedC_{};
  std::chrono::nanoseconds pending_{0};
  /// 0x48, 0x4A. The adapter's firmware closes all wired switches before it answers for the first time.
  std::array<std::uint8_t, 2> ports_{0xFF, 0x3F};
  std::array<int, kHeaters> heaterPercent_{};
  bool d2OnBoard_ = true;
  int d2ChangeOverTicks_ = 0;
};

}  // namespace zth::simulator
