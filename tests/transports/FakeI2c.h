#pragma once

#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "linux-smbus/I2cSystem.h"

namespace zth::smbus {

/// A kernel with buses and chips in memory. Records every transfer that reaches a bus, as "0:2C r 3E".
class FakeI2c final : public I2cSystem {
 public:
  struct Bus {
    std::string name = "SMBus host";
    std::map<std::uint8_t, std::map<std::uint8_t, std::uint8_t>> chips;
    std::set<std::uint8_t> held;  ///< addresses that a driver is bound to
    bool isThere = true;
    bool isDisplay = false;
    int openError = 0;
    int selectError = 0;
    int transferError = 0;  ///< of every transfer; 0: ENXIO if there is no chip
    Abilities abilities{true, true};
  };

  std::map<int, Bus> buses;
  std::vector<std::string> transfers;
  int opened = 0;
  int closed = 0;
  int looks = 0;

  std::vector<Adapter> Adapters() override {
    std::vector<Adapter> adapters;
    for (const auto& [number, bus] : buses) adapters.push_back({number, bus.name, false, bus.isDisplay});
    return adapters;
  }
  bool IsThere(int adapter) override { return ++looks, buses.at(adapter).isThere; }
  std::string DriverAt(int /*adapter*/, std::uint8_t /*address*/) override { return "lm75"; }
  std::string NodeOf(int adapter) override { return "/dev/i2c-" + std::to_string(adapter); }

  int Open(int adapter) override {
    if (buses.at(adapter).openError != 0) return -buses.at(adapter).openError;
    return ++opened, kDescriptors + adapter;
  }
  void Close(int descriptor) override { ++closed, selected_.erase(descriptor); }
  int QueryAbilities(int descriptor, Abilities& abilities) override {
    return abilities = BusOf(descriptor).abilities, 0;
  }
  int Select(int descriptor, std::uint8_t address) override {
    const Bus& bus = BusOf(descriptor);
    if (bus.held.contains(address)) return -EBUSY;
    if (bus.selectError == 0) selected_[descriptor] = address;
    return -bus.selectError;
  }
  int ReadByteData(int descriptor, std::uint8_t reg) override {
    const int error = Begin(descriptor, 'r', reg);
    return error < 0 ? error : BusOf(descriptor).chips.at(selected_.at(descriptor))[reg];
  }
  int WriteByteData(int descriptor, std::uint8_t reg, std::uint8_t value) override {
    const int error = Begin(descriptor, 'w', reg);
    if (error == 0) BusOf(descriptor).chips.at(selected_.at(descriptor))[reg] = value;
    return error;
  }

 private:
  static constexpr int kDescriptors = 100;

  Bus& BusOf(int descriptor) { return buses.at(descriptor - kDescriptors); }

  int Begin(int descriptor, char kind, std::uint8_t reg) {
    const std::uint8_t address = selected_.at(descriptor);
    char text[32];
    std::snprintf(text, sizeof text, "%d:%02X %c %02X", descriptor - kDescriptors, address, kind, reg);
    transfers.emplace_back(text);
    const Bus& bus = BusOf(descriptor);
    if (bus.transferError != 0) return -bus.transferError;
    return bus.chips.contains(address) ? 0 : -ENXIO;
  }

  std::map<int, std::uint8_t> selected_;
};

}  // namespace zth::smbus
