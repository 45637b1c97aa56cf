#include "chip/ChipState.h"
#include "chip/PwmModes.h"
#include "link/Declarations.h"
#include "link/LinkErrors.h"
#include "link/RegisterHooks.h"
#include "link/USBStuff.h"
#include "tests/support/Desk.h"

namespace zth::testing {
namespace {

using namespace zth::link;

/// The link alone: libraries loaded, one link selected, the program not started.
class Link : public ::testing::Test {
 protected:
  Link() {
    Attach(desk.services, [this] { ++closings; });
    chip::EnterPwmHooks();
    LoadUsbFunctions(desk.libraries);
    LoadSmbus(desk.libraries);
    OnUsb();
  }

  static void OnUsb() { Bus.InterfaceMode = kModeUsb, Bus.DeviceAddress = 0x58; }
  static void OnSmbus() { Bus.InterfaceMode = kModeSmbus, Bus.DeviceAddress = 0x2C; }
  /// Runs `check` on one link and then on the other.
  template <typename Check>
  void OnEach(Check check) {
    for (const bool usb : {true, false}) usb ? OnUsb() : OnSmbus(), check();
  }

  Desk desk;
  int closings = 0;
};

TEST_F(Link, EachUsbOperationIsOneRequestOfTheAdapter) {
  desk.board.ports[0x4A] = 0x3F;
  desk.board.heaterState = {20, 40, 60};
  std::int32_t percent = 50;
  EXPECT_EQ(ReadRegister(0x58, 0x3E), 0x41);
  EXPECT_EQ(Bus.ReadBuffer[0], 0x41);
  EXPECT_EQ(ReadRegisterBlock(0x58, 0x10, 4), 0);
  EXPECT_EQ(Bus.ReadBuffer[3], 0xFC);
  EXPECT_EQ(WriteRegisterValue(0x5C, 0x15, 0xAB), 0);
  EXPECT_EQ(SetHeater(2, percent), 0);
  EXPECT_EQ(ReadHeaterState(), 0);
  EXPECT_EQ(Bus.ReadBuffer[1], 40);
  EXPECT_EQ(ReadBoardPort(0x4A), 0x3F);
  EXPECT_EQ(WriteBoardPort(0x48, 0xFF), 0);
  WriteBoardPortUnchecked(0x4A, 0x3C);
  EXPECT_EQ(ConnectAdapter(), 0);
  EXPECT_EQ(desk.board.traffic, (Traffic{"usb R 58:3E", "usb B 58:10+4", "usb W 5C:15=AB", "usb H 2=50", "usb H",
                                         "usb P 4A", "usb P 48=FF", "usb D 4A=3C", "usb C 30:33"}));
}

TEST_F(Link, SmbusHasOnlyByteTransfers) {
  OnSmbus();
  Bus.ReadBuffer.fill(0x77);
  std::int32_t percent = 150;
  EXPECT_EQ(ReadRegister(0x2C, 0x3E), 0x41);
  EXPECT_EQ(Bus.ReadBuffer[0], 0x77) << "a single read leaves the buffer alone";
  EXPECT_EQ(ReadRegisterBlock(0x2C, 0x10, 3), 0);
  EXPECT_EQ(Bus.ReadBuffer[1], 0xCE);
  EXPECT_EQ(Bus.ReadBuffer[3], 0x77);
  EXPECT_EQ(ReadRegisterBlock(0x2C, 0x10, 0), 0);
  EXPECT_EQ(WriteRegisterValue(0x2C, 0x30, 0x90), 0);
  EXPECT_EQ(SetHeater(1, percent) + ReadHeaterState() + ReadBoardPort(0x4A) + WriteBoardPort(0x4A, 1), 0);
  WriteBoardPortUnchecked(0x4A, 1);
  EXPECT_EQ(percent, 150) << "an operation of the other link does nothing at all";
  EXPECT_EQ(desk.board.traffic,
            (Traffic{"smb R 2C:3E", "smb R 2C:10", "smb R 2C:11", "smb R 2C:12", "smb W 2C:30=90"}));
}

TEST_F(Link, WithoutALinkNothingIsTransferred) {
  for (const std::int16_t mode : std::array<std::int16_t, 3>{0, 3, -1}) {
    Bus.InterfaceMode = mode;
    EXPECT_EQ(ReadRegister(0x58, 0x3E), 0);
    EXPECT_EQ(ReadRegisterBlock(0x58, 0x10, 4), 0);
    EXPECT_EQ(WriteRegisterValue(0x58, 0x21, 0xFF), 0);
    EXPECT_EQ(ReadBoardPort(0x4A), 0);
  }
  EXPECT_TRUE(desk.board.traffic.empty());
  EXPECT_FALSE(chip::Model.PwmManual[1]);
}

TEST_F(Link, ValuesAreLimitedToAByteForTheCallerToo) {
  OnEach([this] {
    for (const auto& [given, sent] : {std::pair{300, 255}, {255, 255}, {256, 255}, {-1, 0}, {0, 0}, {100000, 255}}) {
      std::int32_t value = given;
      WriteRegister(Bus.DeviceAddress, 0x30, value);
      EXPECT_EQ(value, sent);
      EXPECT_EQ(desk.board.TakeTraffic(), Traffic{W(0x30, sent)});
    }
  });
  OnUsb();
  for (const auto& [given, sent] : {std::pair{150, 100}, {-5, 0}, {100, 100}}) {
    std::int32_t percent = given;
    SetHeater(1, percent);
    EXPECT_EQ(percent, sent);
    EXPECT_EQ(desk.board.TakeTraffic(), Traffic{"usb H 1=" + std::to_string(sent)});
  }
  EXPECT_EQ(WriteBoardPort(0x4A, 256) + WriteBoardPort(0x4A, -1), 0);
  EXPECT_TRUE(desk.board.traffic.empty());
}

TEST_F(Link, ARegisterAddressAboveAByteCausesNoTransfer) {
  int hooks = 0;
  OnRegisterWrite(0x121, [&] { ++hooks; });
  OnEach([] {
    for (const std::int32_t reg : {-1, 0x100, 0x121, 0x7FFFFFFF}) {
      EXPECT_EQ(ReadRegister(Bus.DeviceAddress, reg), 0);
      EXPECT_EQ(WriteRegisterValue(Bus.DeviceAddress, reg, 1), 0);
      EXPECT_EQ(ReadRegisterBlock(Bus.DeviceAddress, reg, 1), 0);
    }
    EXPECT_EQ(ReadRegisterBlock(Bus.DeviceAddress, 0xFE, 3), 0) << "a run that leaves the register file";
    EXPECT_EQ(ReadRegisterBlock(Bus.DeviceAddress, 0, 66), 0) << "a run that does not fit the buffer";
  });
  EXPECT_TRUE(desk.board.traffic.empty());
  EXPECT_EQ(hooks, 0);
}

TEST_F(Link, AWriteToAPwmConfigurationReadsItBackForAllThreeBitsOfManual) {
  OnEach([this] {
    for (const auto& [value, manual] : {std::pair{0xE5, true}, {0xDF, false}}) {
      for (int pwm = 1; pwm <= 4; ++pwm) {
        WriteRegisterValue(Bus.DeviceAddress, 0x20 + pwm, value);
        EXPECT_EQ(desk.board.TakeTraffic(), Concat(W(0x20 + pwm, value), R(0x20 + pwm)));
        EXPECT_EQ(chip::Model.PwmManual[static_cast<std::size_t>(pwm)], manual);
      }
    }
  });
}

TEST_F(Link, TheHeaterQuestionClosesTheLinkAndNoLetsTheProgramContinue) {
  desk.board.failMatching = "usb H";
  desk.prompts.script = {platform::BoxAnswer::No};
  std::int32_t percent = 20;
  desk.prompts.whileShown = [&] {
    if (desk.prompts.shown.size() > 1) return;
    EXPECT_TRUE(LinkHeld());
    EXPECT_EQ(ReadRegister(0x58, 0x3E) + WriteRegisterValue(0x58, 0x30, 1) + SetHeater(2, percent), 0);
    ReportLinkError(kCommunicationsInterrupted);
  };
  EXPECT_EQ(SetHeater(1, percent), desk.board.failure);
  EXPECT_EQ(desk.board.traffic, Traffic{"usb H 1=20"});
  EXPECT_EQ(desk.prompts.shown.size(), 1U);
  EXPECT_EQ(desk.prompts.shown.at(0).icon, platform::BoxIcon::None);
  EXPECT_EQ(desk.prompts.shown.at(0).buttons, platform::BoxButtons::YesNo);
  EXPECT_EQ(closings, 0);
  EXPECT_FALSE(LinkHeld());
  EXPECT_EQ(ReadRegister(0x58, 0x3E), 0x41);
}

TEST_F(Link, EveryCodeHasItsBoxAndHigherOnesEndSilently) {
  const QStringList texts{"Firmware failed to download", "SMBus enable error ", "Initial Connection Failed",
                          "Communications Interrupted", "Device not found"};  // by code
  for (const int code : {0, 1, 2, 3, 4, 6, 99}) {
    const bool silent = code >= texts.size();
    Desk fresh;
    Attach(fresh.services, [this] { ++closings; });
    closings = 0;
    if (!silent) fresh.prompts.script = {platform::BoxAnswer::Ok};
    EXPECT_THROW(ReportLinkError(code), platform::ProcessEnded);
    EXPECT_EQ(fresh.process.ends, std::vector{1});
    EXPECT_EQ(closings, 1);
    OnUsb();
    // A handler that still ran below the end would reach no transport: it ends, too.
    EXPECT_THROW(ReadRegister(0x58, 0x3E), platform::ProcessEnded);
    EXPECT_THROW(WriteRegisterValue(0x58, 0x30, 1), platform::ProcessEnded);
    EXPECT_TRUE(fresh.board.traffic.empty());
    ASSERT_EQ(fresh.prompts.shown.size(), silent ? 0U : 1U) << code;
    if (silent) continue;
    const platform::BoxQuestion& box = fresh.prompts.shown[0];
    EXPECT_EQ(box.title, "ZTH4718 Evaluation Software");
    EXPECT_EQ(box.text, texts[code] + " - Check USB connections");
    EXPECT_EQ(box.icon, platform::BoxIcon::Critical);
    EXPECT_EQ(box.buttons, platform::BoxButtons::Ok);
  }
}

TEST_F(Link, ALibraryWithoutItsEntriesCallsNothing) {
  desk.board.missingEntries = {"VendorIORequest", "WriteSmbus"};
  EXPECT_FALSE(LoadUsbFunctions(desk.libraries).toLower().contains("file not found"));
  EXPECT_FALSE(LoadSmbus(desk.libraries).isEmpty());
  EXPECT_EQ(Bus.UsbFunctions.LoadFirmWare, nullptr) << "half a library is none";
  OnSmbus();
  EXPECT_EQ(ReadRegister(0x2C, 0x3E), 0);
  WriteRegisterValue(0x2C, 0x30, 1);
  OnUsb();
  desk.prompts.script = {platform::BoxAnswer::Ok};
  EXPECT_THROW(ReadRegister(0x58, 0x3E), platform::ProcessEnded);
}

}  // namespace
}  // namespace zth::testing
