#include "simulator/Measurement.h"

#include <algorithm>
#include <optional>

#include "simulator/ChipTime.h"
#include "simulator/Encodings.h"
#include "simulator/PinModel.h"

namespace zth::simulator {
namespace {

constexpr double kTemperatureNoiseC = 0.08;
constexpr double kVoltageNoise = 0.001;          // fraction of the nominal voltage
constexpr double kTachNoise = 0.001;             // fraction of the count
constexpr double kAveraging = 0.25;              // averaging 16 conversions leaves a quarter of the noise
constexpr double kUnattenuatedFullScale = 2.25;  // volts at the converter without attenuator, code 256
constexpr int kNominalCode = 192;

constexpr int ValueRegister(int channel) {
  return 0x88 + 2 * channel;
}
constexpr int TachRegister(int fan) {
  return (fan < 4 ? 0x98 : 0x9A) + 2 * fan;
}
// Tachs 5 to 8 share their high byte with a voltage pin.
constexpr VoltagePin kTachVoltagePin[] = {VoltagePin::P7, VoltagePin::P8, VoltagePin::P21, VoltagePin::P22};

}  // namespace

bool Measurement::Tick(const PinInputs& inputs) {
  const bool shutDown = registers_.Bit(0x02, 1);
  if (shutDown) return false;

  for (int fan = 0; fan < kTachs; ++fan) MeasureTach(fan, inputs);

  if (--untilConversion_ > 0) return false;
  untilConversion_ = Ticks(kConversionSeconds);
  const bool monitoring = registers_.Bit(0x01, 0);
  if (!monitoring) return false;
  ConvertTemperatures(inputs);
  ConvertVoltages(inputs);
  return true;
}

void Measurement::Reset() {
  untilConversion_ = 1;
  sinceTach_.fill(0);
  quarters_.fill(std::nullopt);
  fault_.fill(false);
}

std::optional<int> Measurement::Quarters(int channel) const {
  return pins_.HasDiode(channel) ? quarters_[At(channel)] : std::nullopt;
}

void Measurement::ConvertTemperatures(const PinInputs& inputs) {
  const double noise = kTemperatureNoiseC * noise_ * (registers_.Bit(0x01, 2) ? kAveraging : 1.0);
  for (int channel = 0; channel < kTemperatures; ++channel) {
    const auto i = At(channel);
    const double measured = inputs.temperatureC[i] + noise * random_.Bell();
    if (!pins_.HasDiode(channel)) {
      fault_[i] = false;
      quarters_[i].reset();
      continue;
    }
    fault_[i] = channel != 0 && inputs.diodeOpen[i];
    // The converter discards a conversion without a diode: the status bit is set, the reading is kept.
    if (fault_[i]) continue;
    // Offsets are two's complement in half degrees.
    const int offset = 2 * static_cast<signed char>(registers_[0x56 + channel]);
    quarters_[i] = std::clamp(TemperatureCode(measured) + offset, 0, 1023);
    registers_.Put(ValueRegister(channel), (*quarters_[i] & 3) << 6);
    registers_.Put(ValueRegister(channel) + 1, *quarters_[i] >> 2);
  }
}

void Measurement::ConvertVoltages(const PinInputs& inputs) {
  const bool either15 = pins_.IsVoltage(VoltagePin::P28) || pins_.IsVoltage(VoltagePin::P29);
  for (int n = 0; n < kVoltagePins; ++n) {
    const auto pin = static_cast<VoltagePin>(n);
    double nominal = pins_.Nominal(pin);
    // The two 1.5 V inputs are converted as a pair if either is in use.
    if (pin >= VoltagePin::P28 && either15) nominal = 1.5;
    PutVoltage(pin, inputs.volts[At(n)], nominal);
  }
}

void Measurement::PutVoltage(VoltagePin pin, double volts, double nominal) {
  const double noise = kVoltageNoise * noise_ * (registers_.Bit(0x01, 1) ? kAveraging : 1.0);
  const double measured = volts + nominal * noise * random_.Bell();
  const VoltageRow& row = RowOf(pin);
  if (nominal <= 0) {
    // If another function uses the register, leave it alone; otherwise reset it to 0.
    const bool shared = row.valueRegister >= 0xA0 || pin == VoltagePin::P15 || pin == VoltagePin::P19;
    if (!shared) registers_.Put(row.valueRegister, 0);
    return;
  }
  const bool ownDivider = pin == VoltagePin::P26 && nominal == 4;  // the battery input always has its divider
  const bool attenuated = ownDivider || registers_.Bit(row.attenuatorRegister, row.attenuatorBit);
  registers_.Put(row.valueRegister, attenuated ? VoltageCode(measured, nominal, kNominalCode)
                                               : VoltageCode(measured, kUnattenuatedFullScale, 256));
  if (pin == VoltagePin::P15 || pin == VoltagePin::P19) registers_.Put(row.valueRegister - 1, 0);
}

int Measurement::TachPeriodTicks(int fan) const {
  const double period = registers_.Bit(0x02, 0) ? kFastTachSeconds : kTachSeconds;
  // A low frequency output cuts the fan's supply, and its tach with it. Unless continuous readings are on, the tachs of
  // the four outputs take turns, with stretched pulses.
  const bool continuous = registers_.Bit(0x02, 2) || registers_.Bit(0x08, fan % kPwms);
  return Ticks(continuous ? period : 4 * period);
}

void Measurement::MeasureTach(int fan, const PinInputs& inputs) {
  const auto i = At(fan);
  if (!TachLive(fan)) {
    sinceTach_[i] = -1;
    return;
  }
  if (sinceTach_[i] < 0) {
    sinceTach_[i] = 0;
    PutTach(fan, 0xFFFF);
  }
  if (++sinceTach_[i] < TachPeriodTicks(fan)) return;
  sinceTach_[i] = 0;
  const int pulses = registers_.Field(0x02, 6, 2) + 1;
  const double jitter = 1.0 + kTachNoise * noise_ * random_.Bell();
  const int count = TachCount(inputs.pulsesPerMinute[i] * jitter, pulses);
  PutTach(fan, count);
}

void Measurement::PutTach(int fan, int count) {
  registers_.Put(TachRegister(fan), count & 0xFF);
  registers_.Put(TachRegister(fan) + 1, count >> 8);
}

void Measurement::DropDisabledTachs() {
  for (int fan = 0; fan < kTachs; ++fan) {
    if (TachLive(fan)) continue;
    registers_.Put(TachRegister(fan), 0xFF);
    const bool voltage = fan >= 4 && pins_.IsVoltage(kTachVoltagePin[fan - 4]);
    if (!voltage) registers_.Put(TachRegister(fan) + 1, 0xFF);
  }
}

int Measurement::TachCountOf(int fan) const {
  return registers_[TachRegister(fan)] | registers_[TachRegister(fan) + 1] << 8;
}

}  // namespace zth::simulator
