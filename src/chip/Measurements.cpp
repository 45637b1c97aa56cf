#include "chip/Measurements.h"

#include <algorithm>

#include "chip/ChipState.h"
#include "chip/Conversions.h"
#include "chip/PwmModes.h"
#include "link/Declarations.h"
#include "link/USBStuff.h"

namespace zth::chip {

namespace {

constexpr int kFirstTachRow = 4;
constexpr int kFirstPwmRow = 12;
constexpr int kFirstVoltageRow = 16;
constexpr int kFirstTminRow = 39;
constexpr int kFirstOpPointRow = 43;

template <typename Values>
void StoreRows(int firstRow, const Values& values) {
  auto row = Model.LogChannelTable.begin() + firstRow;
  for (const auto value : values) (row++)->Value = static_cast<float>(value);
}

void ReadTemperatures() {
  const auto bytes = link::ReadBlock<8>("Local Temp LSBs"_reg);
  for (std::size_t i = 0; i < 4; ++i) {
    Model.Measurements.Temperature[i] = TemperatureFromBytes(bytes[2 * i], bytes[2 * i + 1]);
  }
  StoreRows(0, Model.Measurements.Temperature);
}

void ReadTachs() {
  for (std::size_t half = 0; half < 2; ++half) {
    const auto bytes = link::ReadBlock<8>(half == 0 ? "Tach 1 LSB's"_reg : "Tach 5 LSB"_reg);
    for (std::size_t i = 0; i < 4; ++i) {
      const std::int32_t count = bytes[2 * i + 1] * 256 + bytes[2 * i];
      Model.Measurements.TachRpm[4 * half + i] = TachCountToRpm(count, Model.TachClock);
    }
  }
  StoreRows(kFirstTachRow, Model.Measurements.TachRpm);
}

void ReadPwms() {
  const auto bytes = link::ReadBlock<4>("PWM 1 Value"_reg);
  for (std::size_t i = 0; i < 4; ++i) {
    Model.Measurements.PwmPercent[i] = PercentFromByte(PwmRawNormalise(bytes[i], Model.ChipRevision));
  }
  StoreRows(kFirstPwmRow, Model.Measurements.PwmPercent);
}

void ReadVoltages() {
  std::array<std::uint8_t, 256> raw{};
  const auto read = [&raw]<std::size_t kCount>(std::uint8_t first, std::integral_constant<std::size_t, kCount>) {
    const auto bytes = link::ReadBlock<kCount>(first);
    std::copy(bytes.begin(), bytes.end(), raw.begin() + first);
  };
  read("Pin 15 Voltage"_reg, std::integral_constant<std::size_t, 1>());
  read("Pin 19 Voltage"_reg, std::integral_constant<std::size_t, 8>());
  read("+12V1 Voltage"_reg, std::integral_constant<std::size_t, 7>());
  for (std::size_t i = 0; i < kVoltageInputs.size(); ++i) {
    Model.Measurements.Voltage[i] = VoltageFromRaw(raw[kVoltageInputs[i].reg], kVoltageInputs[i].scale);
  }
  StoreRows(kFirstVoltageRow, Model.Measurements.Voltage);
}

void ReadThermOnTimes() {
  const auto bytes = link::ReadBlock<2>("THERM 1% Ontime"_reg);
  for (std::size_t i = 0; i < 2; ++i) Model.Measurements.ThermPercent[i] = PercentFromByte(bytes[i]);
}

void ReadDynamicTminState() {
  const auto remotePair = [](std::int32_t first, std::array<std::int16_t, 3>& values) {
    const auto bytes = link::ReadBlock<2>(first);
    values[1] = DegreesFromByte(bytes[0]);
    values[2] = DegreesFromByte(bytes[1]);
  };
  remotePair("Remote 1 Operating Point"_reg, Model.Measurements.PolledOpPoint);
  const auto tmins = link::ReadBlock<4>("Local Tmin"_reg);
  std::transform(tmins.begin(), tmins.end(), Model.Measurements.PolledTmin.begin(), DegreesFromByte);
  remotePair("Remote 1 High Limit"_reg, Model.Measurements.PolledHighLimit);
  remotePair("Remote 1 Low Limit"_reg, Model.Measurements.PolledLowLimit);
  StoreRows(kFirstTminRow, Model.Measurements.PolledTmin);
  StoreRows(kFirstOpPointRow, std::array{Model.Measurements.PolledOpPoint[1], Model.Measurements.PolledOpPoint[2]});
}

}  // namespace

void ReadMeasurementGroup(std::int16_t group) {
  constexpr std::array kGroups{ReadTemperatures, ReadTachs,        ReadPwms,
                               ReadVoltages,     ReadThermOnTimes, ReadDynamicTminState};
  if (group < 1 || group > static_cast<std::int16_t>(kGroups.size())) return;
  kGroups[static_cast<std::size_t>(group - 1)]();
  ++Model.Measurements.Reads[static_cast<std::size_t>(group)];
}

}  // namespace zth::chip
