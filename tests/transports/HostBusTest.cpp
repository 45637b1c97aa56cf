#include <initializer_list>
#include <sstream>
#include <tuple>
#include <utility>

#include <gmock/gmock.h>

#include "linux-smbus/HostBus.h"
#include "tests/transports/FakeI2c.h"

namespace zth::smbus {
namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::Not;

class HostBusTest : public testing::Test {
 protected:
  /// Buses from 0 on, each with a chip at 0x2C whose register 0x3E has this value; -1 means no chip.
  void AddBuses(std::initializer_list<int> companyIds) {
    for (int number = 0; const int id : companyIds) {
      FakeI2c::Bus& added = system.buses[number++];
      if (id >= 0) added.chips[0x2C][0x3E] = static_cast<std::uint8_t>(id);
    }
  }
  FakeI2c::Bus& Bus(int number) { return system.buses[number]; }
  /// The number of lines on standard error that contain the text.
  int Told(const std::string& text) const {
    std::istringstream lines(errors.str());
    int count = 0;
    for (std::string line; std::getline(lines, line);) count += line.find(text) != std::string::npos ? 1 : 0;
    return count;
  }
  /// Reads and writes "2C r 3E" and "2C w 20=5A". Returns the values read and, after "on", what has reached a bus since
  /// the last call: "41 on 0:2C r 3E, 1:2C r 3E".
  std::string Run(const std::string& text) {
    std::istringstream words(text);
    std::string seen;
    for (std::string address, kind, reg; words >> address >> kind >> reg;) {
      const auto chip = static_cast<std::uint8_t>(std::stoi(address, nullptr, 16));
      const auto byte = static_cast<std::uint8_t>(std::stoi(reg, nullptr, 16));
      if (kind == "w") {
        bus.Write(chip, byte, static_cast<std::uint8_t>(std::stoi(reg.substr(3), nullptr, 16)));
      } else {
        char read[8];
        std::snprintf(read, sizeof read, "%02X ", bus.Read(chip, byte));
        seen += read;
      }
    }
    seen += "on";
    for (const std::string& transfer : std::exchange(system.transfers, {})) seen += " " + transfer + ",";
    return seen;
  }

  FakeI2c system;
  std::ostringstream errors;
  Journal journal{errors, "", [] { return std::string("now"); }};
  HostBus bus{system, journal, Settings{}};
};

TEST_F(HostBusTest, AddressesOfMemoryModulesAndReservedOnesNeverReachABus) {
  AddBuses({-1, -1});
  EXPECT_EQ(bus.Read(0, 0), 0xFF);
  EXPECT_EQ(system.opened, 0) << "the program's probing read opens nothing";
  for (int address = 0; address <= 0xFF; ++address) {
    const auto byte = static_cast<std::uint8_t>(address);
    EXPECT_EQ(bus.Read(byte, 0x3E), 0xFF);
    bus.Write(byte, 0x20, 0x5A);
    const bool allowed = (address >= 0x08 && address <= 0x2F) || (address >= 0x38 && address <= 0x4F) ||
                         (address >= 0x58 && address <= 0x77);
    EXPECT_EQ(std::exchange(system.transfers, {}).size(), allowed ? 4U : 0U) << address;
  }
}

TEST_F(HostBusTest, AChipStaysWithTheFirstAdapterOnWhichItAnswered) {
  AddBuses({-1, 0x41, 0x99});
  bus.Detect();
  EXPECT_EQ(Run("2C r 3E"), "41 on 0:2C r 3E, 1:2C r 3E,");
  Bus(1).chips.clear();
  EXPECT_EQ(Run("2C r 3E 2C w 20=01"), "FF on 1:2C r 3E, 1:2C w 20,") << "a lost chip is not looked for elsewhere";
  Bus(1).chips[0x2C][0x3E] = 0x42;
  EXPECT_EQ(Run("2C r 3E"), "42 on 1:2C r 3E,") << "and is read again once it is back";
}

TEST_F(HostBusTest, AWriteFindsItsChipWithoutAReadBefore) {
  AddBuses({-1, 0x41, 0x41});
  EXPECT_EQ(Run("2C w 20=5A 2C w 21=A5 2C r 20 2C r 21"),
            "5A A5 on 0:2C w 20, 1:2C w 20, 1:2C w 21, 1:2C r 20, 1:2C r 21,");
}

TEST_F(HostBusTest, AnAddressHeldByADriverIsNotTouched) {
  AddBuses({0x41, 0x41});
  Bus(0).held = {0x2C};
  EXPECT_EQ(Run("2C r 3E 2C w 20=01"), "FF on") << "the address is the driver's, on the adapters behind it too";
  EXPECT_EQ(Told("i2c-0, address 0x2C: held by a kernel driver"), 1);
  EXPECT_EQ(Told("echo 0-002c | sudo tee /sys/bus/i2c/drivers/lm75/unbind"), 1);
  Bus(0).held.clear();
  EXPECT_EQ(Run("2C r 3E"), "41 on 0:2C r 3E,") << "free again, read again";
  Bus(0).held = {0x2C};
  EXPECT_EQ(Run("2C r 3E"), "FF on") << "a driver may take the address at any time";
}

TEST_F(HostBusTest, ABusyBusIsNoDriverAndATransferNeverFollowsAFailedSelection) {
  AddBuses({0x41, 0x41});
  Bus(0).transferError = EBUSY;
  EXPECT_EQ(Run("2C r 3E"), "41 on 0:2C r 3E, 1:2C r 3E,");
  EXPECT_EQ(Told("held by"), 0);
  EXPECT_EQ(Told("i2c-0, address 0x2C: read of register 0x3E failed, Device or resource busy (errno 16)"), 1);
  // The descriptors are still set to the previous address.
  for (auto& [number, each] : system.buses) each.selectError = EINVAL;
  EXPECT_EQ(Run("2D r 3E 2D w 3E=07"), "FF on");
}

TEST_F(HostBusTest, AFailureIsReportedOncePerAdapterAddressAndErrno) {
  AddBuses({0x41, -1});
  for (int poll = 0; poll < 50; ++poll) {
    Run("2D r 3E 2C r 3E");
    bus.Read(0x2E, static_cast<std::uint8_t>(poll));
  }
  for (const char* where : {"i2c-0, address 0x2D:", "i2c-1, address 0x2D:", "i2c-0, address 0x2E:"}) {
    EXPECT_EQ(Told(where), 1) << where;
  }
  EXPECT_EQ(Told("address 0x2C"), 0);
  Bus(0).transferError = ETIMEDOUT;
  for (int poll = 0; poll < 50; ++poll) Run("2D w 20=00");
  EXPECT_EQ(Told("i2c-0, address 0x2D: write of register 0x20 failed, Connection timed out (errno 110)"), 1);
  EXPECT_EQ(Told("i2c-0, address 0x2D:"), 2);
}

TEST_F(HostBusTest, AnAdapterThatFailsAndIsGoneIsReleasedAndNotUsedAgain) {
  AddBuses({0x41, -1});
  Bus(1).chips[0x58][0x3E] = 0x41;
  Run("2C r 3E 58 r 3E");
  Bus(0).transferError = ENODEV;
  Bus(0).isThere = false;
  EXPECT_EQ(Run("2C r 3E"), "FF on 0:2C r 3E,");
  for (int poll = 0; poll < 1000; ++poll) EXPECT_EQ(Run("2C r 3E 2C w 20=00"), "FF on");
  EXPECT_EQ(system.closed, 1);
  EXPECT_EQ(Told("i2c-0 (SMBus host) has gone."), 1);
  EXPECT_EQ(Told(""), 2) << "nothing else but the search's one failure on i2c-0 for 0x58:\n" << errors.str();
  EXPECT_EQ(Run("58 r 3E"), "41 on 1:58 r 3E,") << "the other adapter goes on";
}

TEST_F(HostBusTest, AnAdapterThatDisappearsWhileItsChipAnswersIsReleasedWithinSeconds) {
  AddBuses({0x41});
  bus.Read(0x2C, 0x3E);
  system.looks = 0;
  Bus(0).isThere = false;
  int reads = 0;
  while (bus.Read(0x2C, 0x3E) != 0xFF && reads < 1000) ++reads;
  EXPECT_LE(reads, 300) << "three seconds of polling";
  EXPECT_LE(system.looks, 2) << "a look at the kernel's files is not the price of each transfer";
  EXPECT_EQ(system.closed, 1);
}

TEST_F(HostBusTest, AnAdapterWithoutByteDataTransfersIsNotUsed) {
  AddBuses({0x41, 0x41});
  Bus(0).abilities = {true, false};
  Bus(1).abilities = {false, true};
  EXPECT_EQ(Run("2C r 3E"), "FF on");
  EXPECT_EQ(system.closed, 2);
  EXPECT_EQ(Told("cannot do byte-data transfers"), 2);
}

TEST_F(HostBusTest, WhatCannotBeOpenedIsReportedWithItsRemedyAndRetriedByTheNextDetection) {
  for (const auto& [error, cause, remedy] :
       {std::tuple{ENOENT, "No such file or directory (errno 2)", "sudo modprobe i2c-dev"},
        {EACCES, "Permission denied (errno 13)", "sudo usermod -aG i2c $USER"},
        {EPERM, "Operation not permitted (errno 1)", "60-zth4718-smbus.rules"},
        {EMFILE, "Too many open files (errno 24)", "not used"}}) {
    HostBus another(system, journal, Settings{});
    errors.str("");
    Bus(4).chips[0x2C][0x3E] = 0x41;
    Bus(4).openError = error;
    another.Detect();
    EXPECT_THAT(errors.str(), AllOf(HasSubstr("i2c-4 (SMBus host): /dev/i2c-4"), HasSubstr(cause), HasSubstr(remedy)));
    EXPECT_EQ(another.Read(0x2C, 0x3E), 0xFF);
    EXPECT_EQ(Told(""), 1) << "a read does not try again: " << errors.str();
    Bus(4).openError = 0;
    another.Detect();
    EXPECT_EQ(another.Read(0x2C, 0x3E), 0x41);
  }
}

TEST_F(HostBusTest, AMachineWithoutABusOrHostIsReported) {
  bus.Detect();
  EXPECT_THAT(errors.str(), AllOf(HasSubstr("knows no SMBus or I2C adapter"), HasSubstr("sudo modprobe i2c-i801")));
  errors.str("");
  Bus(3).name = "Synopsys DesignWare I2C adapter";
  Bus(5).name = "i915 gmbus dpa";
  Bus(5).isDisplay = true;
  bus.Detect();
  EXPECT_THAT(errors.str(),
              AllOf(HasSubstr("i2c-3 (Synopsys DesignWare I2C adapter), i2c-5 (i915 gmbus dpa) [a display's"),
                    HasSubstr(kAdaptersVariable), Not(HasSubstr("knows no"))));
  EXPECT_EQ(system.opened, 0);
}

}  // namespace
}  // namespace zth::smbus
