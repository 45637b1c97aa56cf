#include "chip/PinModel.h"

#include <algorithm>

#include "base/BitField.h"
#include "chip/ChipState.h"
#include "chip/Measurements.h"
#include "chip/RegisterNames.h"
#include "link/Asker.h"
#include "link/Declarations.h"
#include "link/RegisterHooks.h"
#include "link/USBStuff.h"

namespace zth::chip {

namespace {

std::int16_t Bit(unsigned whole, base::BitField field) {
  return static_cast<std::int16_t>(base::GetField(whole, field));
}

std::int16_t ThreeWay(unsigned whole, base::BitField field) {
  return static_cast<std::int16_t>(std::min(base::GetField(whole, field), 2U));
}

/// The state of pin 23 or 24: 0 +2.5V, 1 +1.8V, 2 Vccp, 3 +1.5V.
std::int16_t SupplyState(unsigned whole, base::BitField field) {
  static constexpr std::array<std::int16_t, 4> kStateOfField{2, 0, 1, 3};
  return kStateOfField[base::GetField(whole, field)];
}

std::array<bool, kVoltageChannels> PresentVoltages(const PinFunctionFlags& pins) {
  return {
      pins.Pin7 == 0,
      pins.Pin8 == 0,
      pins.Pin13 == 0,
      !pins.D1 && pins.Pin15 == 0,
      !pins.D1 && pins.Pin15 == 1,
      !pins.D3 && pins.Pin20 == 0,
      !pins.D3 && pins.Pin20 == 1,
      pins.Pin21 == 0,
      pins.Pin22 == 0,
      pins.Pin23 == 2,
      pins.Pin23 == 3,
      pins.Pin23 == 1,
      pins.Pin23 == 0,
      pins.Pin24 == 2,
      pins.Pin24 == 3,
      pins.Pin24 == 1,
      pins.Pin24 == 0,
      pins.Pin25 == 1,
      pins.Pin25 == 0,
      pins.Pin26 == 1,
      pins.Pin26 == 0,
      pins.Pin28 == 1,
      pins.Pin29 == 1,
  };
}

void SetAvailability(const PinFunctionFlags& pins) {
  const auto set = [](int row, bool available) {
    Model.LogChannelTable[static_cast<std::size_t>(row)].Available = available ? 1.0F : 0.0F;
  };
  const std::array temperatures{true, pins.D1, true, pins.D3};
  const std::array tachs{pins.Pin1 == 1, pins.Pin2 == 1, pins.Pin3 == 1,  pins.Pin4 == 1,
                         pins.Pin7 == 1, pins.Pin8 == 1, pins.Pin21 == 1, pins.Pin22 == 1};
  const std::array pwms{pins.Pin31 == 1, pins.Pin32 == 1, true, pins.Pin13 == 1};
  int row = 0;
  for (const bool available : temperatures) set(row++, available);
  for (const bool available : tachs) set(row++, available);
  for (const bool available : pwms) set(row++, available);
  for (const bool available : Model.VoltagePresent) set(row++, available);
  while (row < kLogChannels) set(row++, true);
}

}  // namespace

PinFunctionFlags DecodePinFunctions(const std::array<std::uint8_t, 4>& configs) {
  const auto [config1, config2, config3, config4] = configs;
  PinFunctionFlags pins;
  pins.Vid = Bit(config1, Field("Pin Config 1", "VID")) != 0;
  pins.D1 = Bit(config1, Field("Pin Config 1", "D1")) != 0;
  pins.D3 = Bit(config1, Field("Pin Config 1", "D3")) != 0;
  pins.Pin1 = Bit(config1, Field("Pin Config 1", "P1"));
  pins.Pin2 = Bit(config1, Field("Pin Config 1", "P2"));
  pins.Pin3 = Bit(config1, Field("Pin Config 1", "P3"));
  pins.Pin4 = Bit(config1, Field("Pin Config 1", "P4"));
  pins.Pin7 = Bit(config1, Field("Pin Config 1", "P7"));
  pins.Pin8 = Bit(config2, Field("Pin Config 2", "P8"));
  pins.Pin13 = Bit(config2, Field("Pin Config 2", "P13"));
  pins.Pin15 = Bit(config2, Field("Pin Config 2", "P15"));
  pins.Pin20 = Bit(config2, Field("Pin Config 2", "P20"));
  pins.Pin21 = Bit(config2, Field("Pin Config 2", "P21"));
  pins.Pin22 = Bit(config2, Field("Pin Config 2", "P22"));
  pins.Pin23 = SupplyState(config2, Field("Pin Config 2", "P23"));
  pins.Pin24 = SupplyState(config3, Field("Pin Config 3", "P24"));
  pins.Pin25 = ThreeWay(config3, Field("Pin Config 3", "P25"));
  pins.Pin26 = ThreeWay(config3, Field("Pin Config 3", "P26"));
  pins.Pin27 = Bit(config3, Field("Pin Config 3", "P27"));
  pins.Pin28 = ThreeWay(config4, Field("Pin Config 4", "P28"));
  pins.Pin29 = ThreeWay(config4, Field("Pin Config 4", "P29"));
  pins.Pin31 = Bit(config4, Field("Pin Config 4", "P31"));
  pins.Pin32 = Bit(config4, Field("Pin Config 4", "P32"));
  return pins;
}

void ReadPinConfiguration() {
  Model.PinFunctions = DecodePinFunctions(link::ReadBlock<4>("Pin Config 1"_reg));
  Model.PinFunctionsFrom = link::ChipInUse();
  Model.VoltagePresent = PresentVoltages(Model.PinFunctions);
  SetAvailability(Model.PinFunctions);
}

std::uint8_t PackSwitchByte(int device) {
  unsigned port = 0;
  for (std::size_t bit = 0; bit < 8; ++bit) {
    if (Model.BoardSwitch[8 * static_cast<std::size_t>(device) + bit]) port |= 1U << bit;
  }
  return static_cast<std::uint8_t>(port);
}

void ResetBoardSwitches() {
  for (const std::size_t closed : {0U, 1U, 12U, 13U, 14U, 15U}) Model.BoardSwitch[closed] = true;
  link::WriteBoardPort(kSwitchDevice0, PackSwitchByte(0));
  link::WriteBoardPort(kSwitchDevice1, PackSwitchByte(1));
}

void UpdateBoardSwitches() {
  Model.BoardSwitch[2] = Model.PinFunctions.Pin28 == 2;
  Model.BoardSwitch[3] = Model.PinFunctions.Pin29 == 2;
  Model.BoardSwitch[4] = Model.PinFunctions.Pin31 == 1;
  Model.BoardSwitch[5] = Model.PinFunctions.Pin32 == 1;
  Model.BoardSwitch[6] = false;
  Model.BoardSwitch[7] = false;
  link::WriteBoardPort(kSwitchDevice0, PackSwitchByte(0));
  Model.BoardSwitch[8] = Model.PinFunctions.Pin1 == 1;
  Model.BoardSwitch[9] = Model.PinFunctions.Pin2 == 1;
  Model.BoardSwitch[10] = Model.PinFunctions.Pin3 == 1;
  Model.BoardSwitch[11] = Model.PinFunctions.Pin4 == 1;
  link::WriteBoardPort(kSwitchDevice1, PackSwitchByte(1));
}

void InitVoltageNames() {
  for (std::size_t channel = 0; channel < kVoltageInputs.size(); ++channel) {
    Model.VoltageName[channel] = kVoltageInputs[channel].name;
  }
}

void EnterPinHooks() {
  for (std::int32_t reg = "Pin Config 1"_reg; reg <= "Easy Config"_reg; ++reg) {
    link::OnRegisterWrite(reg, [] {
      const link::Asker pins(link::Asker::Kind::Part, [] { return "pins"; });
      ReadPinConfiguration();
      UpdateBoardSwitches();
    });
  }
}

}  // namespace zth::chip
