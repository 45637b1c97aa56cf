#include <chrono>
#include <sstream>
#include <string>
#include <variant>
#include <vector>

#include <gtest/gtest.h>

#include "tests/simulator/UsbOnBench.h"

namespace zth::simulator {
namespace {

using namespace std::chrono_literals;

TEST(SimulatorSettings, AnEmptyTextMeansTheDefaults) {
  for (const char* text : {"", "\n\n", "# only a comment", "   \t\r\n"}) {
    const Settings settings = Parsed(text);
    EXPECT_EQ(settings.usbChips, (std::vector<std::uint8_t>{0x58}));
    EXPECT_EQ(settings.smbusChips, (std::vector<std::uint8_t>{0x2C}));
    EXPECT_TRUE(settings.faults.empty());
  }
}

TEST(SimulatorSettings, EveryKeyIsTaken) {
  const Settings s = Parsed(
      "seed = 12345\r\nambient = -5.5  # a cold room\ntime-factor = 20\nrevision = 3\nfan-pulses = 4\nnoise = 0\n"
      "d2-connector = open\nusb = 0x58 0x5C\nsmbus = none\nfirmware = refused\nconnect-at-try = 21");
  EXPECT_TRUE(s.seed == 12345U && s.ambientC == -5.5 && s.timeFactor == 20 && s.revision == 3 && s.fanPulses == 4);
  EXPECT_TRUE(s.noise == 0 && !s.diodeAtD2Connector && s.usbChips == (std::vector<std::uint8_t>{0x58, 0x5C}));
  EXPECT_TRUE(s.smbusChips.empty() && s.firmwareRefused && s.connectAtTry == 21);
}

TEST(SimulatorSettings, AFaultKeepsItsTimesNumbersAndFilters) {
  const FaultPlan plan = Parsed(
                             "fault from 1.5 to 20 transfer fails 4 times register 0x89 request 0xDC on usb\n"
                             "fault at 3 supply pin 21 at 120 % on smbus\n")
                             .faults;
  ASSERT_EQ(plan.size(), 2U);
  const Fault &fails = plan[0], &supply = plan[1];
  EXPECT_TRUE(fails.from == 1500ms && fails.until == 20s && fails.count == 4);
  EXPECT_TRUE(fails.address == 0x89 && fails.request == 0xDC && fails.link == Link::Usb);
  EXPECT_TRUE(supply.kind == FaultKind::SupplyFactor && supply.pin == VoltagePin::P21 && supply.value == 120);
  EXPECT_TRUE(!supply.until.has_value() && supply.link == Link::Smbus);
}

TEST(SimulatorSettings, AWrongLineIsNamedAndSaysWhatIsWrong) {
  // Lines, each with what is said about it.
  std::istringstream cases(
      "ambient => key = value; ambient 25 => key = value; colour = red => 'colour' is no setting; "
      "ambient = warm => from -40 to 100; ambient = 25 26 => from -40 to 100; "
      "ambient = 101 => from -40 to 100; ambient = nan => from -40 to 100; "
      "time-factor = 0 => from 0.01 to 1000; revision = 256 => from 0 to 255; revision = 1.5 => whole number; "
      "seed = -1 => whole number; usb = => bus addresses; usb = 0x58 0x80 => '0x80'; smbus = 0x2C 44 => twice; "
      "firmware = maybe => accepted or refused; fault => begins with; fault fan 1 stalled => begins with; "
      "fault at soon fan 1 stalled => 'soon'; fault from 5 to 5 fan 1 stalled => ends before; "
      "fault at 5 => missing; fault at 5 fan 9 stalled => fans 1 to 8; "
      "fault at 5 fan 0 stalled => fans 1 to 8; fault at 5 heater 3 stuck at 5 % => heaters; "
      "fault at 5 heater 1 stuck at 101 % => 0 to 100; fault at 5 diode 0 open => diodes; "
      "fault at 5 therm 3 low => THERM; fault at 5 vr-hot 0 reported => regulators; "
      "fault at 5 gpio 9 low => GPIOs; fault at 5 supply pin 14 at 80 % => pin; "
      "fault at 5 register 0x100 stuck at 0 => 0xFF; fault at 5 register 1 bit 8 flipped => 0 to 7; "
      "fault at 5 register 1 stuck => stuck at; fault at 5 transfer fails 0 times => at least; "
      "fault at 5 transfer slow 0 ms => 60000; fault at 5 transfer fails request 0x1DA => no request; "
      "fault at 5 transfer vanishes => transfer fails; fault at 5 adapter unplugged on fire => usb or smbus; "
      "fault at 5 coffee spilled => not known; ");
  for (std::string row; std::getline(cases >> std::ws, row, ';');) {
    const std::string line = row.substr(0, row.find(" => "));
    const std::string says = row.substr(line.size() + 4);
    const auto parsed = ParseSettings("ambient = 30\n\n" + line + "\nambient = 20\n");
    const auto* error = std::get_if<SettingsError>(&parsed);
    ASSERT_NE(error, nullptr) << line;
    EXPECT_EQ(error->line, 3) << line;
    EXPECT_NE(error->text.find(says), std::string::npos) << line << " gave: " << error->text;
  }
}

}  // namespace
}  // namespace zth::simulator
