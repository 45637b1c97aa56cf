#pragma once

#include <array>
#include <chrono>
#include <cmath>
#include <cstdint>
#include <string>
#include <variant>

#include <gtest/gtest.h>

#include "simulator/SettingsText.h"
#include "simulator/UsbAdapter.h"
#include "tests/simulator/Play.h"

namespace zth::simulator {

inline Settings Parsed(const std::string& text) {
  const auto parsed = ParseSettings(text);
  const auto* error = std::get_if<SettingsError>(&parsed);
  EXPECT_EQ(error, nullptr) << error->line << ": " << error->text;
  return error == nullptr ? std::get<Settings>(parsed) : Settings{};
}

/// The adapter as the program calls it; the test lets time pass.
struct Usb {
  explicit Usb(const Settings& settings = {}) : adapter(settings) {}
  explicit Usb(const std::string& text) : Usb(Parsed(text)) {}

  void Wait(std::chrono::nanoseconds time) { adapter.TheBus().AdvanceReal(time); }
  int Ask(int request, int value, int index, int direction, int length) {
    return adapter.Request(static_cast<std::int16_t>(request), value, index, static_cast<std::int16_t>(direction),
                           static_cast<std::int16_t>(length), buffer.data());
  }
  /// -1 when the transfer fails.
  int Read(int reg, int address = 0x58) { return Ask(0xDE, address, reg, 1, 1) == 0 ? buffer[0] : -1; }
  int Write(int reg, int value, int address = 0x58) { return Ask(0xDE, address, value * 256 + reg, 0, 0); }
  int ReadPort(int address) { return Ask(0xDF, address, 0, 1, 1) == 0 ? buffer[0] : -1; }
  int Connect() { return Ask(0xDD, 0x30, 0x33, 0, 0); }

  /// Steps with p a port; a failed read is -1, a write has to succeed.
  void Play(const std::string& steps) { simulator::Play(*this, steps); }
  void Run(double seconds) { Wait(std::chrono::milliseconds(std::lround(seconds * 1000))); }
  void Set(char what, int n, double value) {
    const int byte = static_cast<int>(value);
    EXPECT_EQ(what == 'p' ? Ask(0xDF, n, byte, 0, 0) : Write(n, byte), 0);
  }
  double Get(char what, int n) { return what == 'p' ? ReadPort(n) : Read(n); }

  UsbAdapter adapter;
  std::array<std::uint8_t, 65> buffer{};
};

}  // namespace zth::simulator
