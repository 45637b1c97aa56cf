#pragma once

#include <array>
#include <optional>

#include "simulator/Noise.h"
#include "simulator/PinInputs.h"
#include "simulator/PinModel.h"
#include "simulator/RegisterFile.h"

namespace zth::simulator {

/// The chip's converter and tach counters: measures the pins into the value registers 0x88 to 0xA9.
class Measurement {
 public:
  /// `noise` scales the converter's own noise; with 0, readings are exact except for rounding.
  Measurement(RegisterFile& registers, const PinModel& pins, Noise random, double noise)
      : registers_(registers), pins_(pins), random_(random), noise_(noise) {}

  /// One tick. True if it completed a round of conversions.
  bool Tick(const PinInputs& inputs);

  /// Resets to the power-up state.
  void Reset();

  /// Tachs that are disabled, or whose pins have another function, read 0xFFFF at once.
  void DropDisabledTachs();

  /// A channel's last reading in quarter degrees above -64 degrees C; empty before the first one and while its pins are
  /// voltage inputs. While the diode is open, the last good reading is kept.
  std::optional<int> Quarters(int channel) const;

  /// True if the channel's diode was open at the last conversion.
  bool DiodeFault(int channel) const { return fault_[At(channel)]; }

  /// True if the tach is enabled and its pin is a tach input.
  bool TachLive(int fan) const { return registers_.Bit(0x07, fan) && pins_.HasTach(fan); }

  /// The 16-bit count of a tach, as in its registers.
  int TachCountOf(int fan) const;

 private:
  void ConvertTemperatures(const PinInputs& inputs);
  void ConvertVoltages(const PinInputs& inputs);
  void PutVoltage(VoltagePin pin, double volts, double nominal);
  void MeasureTach(int fan, const PinInputs& inputs);
  void PutTach(int fan, int count);
  int TachPeriodTicks(int fan) const;

  RegisterFile& registers_;
  const PinModel& pins_;
  Noise random_;
  double noise_;
  int untilConversion_ = 1;
  std::array<int, kTachs> sinceTach_{};  ///< ticks since the last count; -1 while the tach is off
  std::array<std::optional<int>, kTemperatures> quarters_;
  std::array<bool, kTemperatures> fault_{};
};

}  // namespace zth::simulator
