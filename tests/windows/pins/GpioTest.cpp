#include <QLabel>

#include "chip/Measurements.h"
#include "chip/PinModel.h"
#include "tests/support/Steps.h"
#include "windows/SharedState.h"
#include "windows/config/frmGPIO.h"

namespace zth::testing {
namespace {

constexpr char kRefresh[] = "B09+2 RBF";

/// The list that stands for a bit of 0x09, 0x0A or 0xBF.
QString ListOf(int reg, int bit) {
  if (reg == 0xBF) return QString("cmbStatus(%1)").arg(bit);
  const int pin = bit / 2 + (reg == 0x0A ? 4 : 0);
  return QString(bit % 2 == 0 ? "cmbPolarity(%1)" : "cmbDir(%1)").arg(pin);
}

/// One bit differs from all others: so does one list, and putting it right by hand sends all three registers, whole.
TEST(Gpio, EachBitMovesOneListAndEachListOneBit) {
  for (const auto buses : {Desk::Buses::Usb, Desk::Buses::Smbus}) {
    WindowDesk desk("frmGPIO", buses);
    for (int each = 0; each < 48; ++each) {
      const int reg = std::array{0x09, 0x0A, 0xBF}[static_cast<std::size_t>(each % 3)];
      const int bit = each / 3 % 8;
      const std::string around = each < 24 ? "00" : "FF";
      auto& registers = desk.board.Chip();
      Put(registers, "09=" + around + " 0A=" + around + " BF=" + around);
      registers[static_cast<std::size_t>(reg)] ^= static_cast<std::uint8_t>(1 << bit);
      desk.Advance(550);
      for (int other = 0; other < 24; ++other) {
        const QString list = ListOf(std::array{0x09, 0x0A, 0xBF}[static_cast<std::size_t>(other % 3)], other / 3);
        EXPECT_EQ(desk.Held(list), (each < 24) == (list == ListOf(reg, bit)) ? "1" : "0") << list.toStdString() << each;
      }
      EXPECT_EQ(desk.Sent(ListOf(reg, bit) + (each < 24 ? "=0" : "=1")),
                T("W09=" + around + " W0A=" + around + " WBF=" + around));
    }
  }
}

TEST(Gpio, EnableChangesItsOwnBitAlone) {
  for (const auto& [before, shown, sent] :
       {std::tuple{"03=00", "0", "R03 W03=01"}, {"03=5A", "0", "R03 W03=5B"}, {"03=FF", "1", "R03 W03=FE"}}) {
    WindowDesk desk("frmGPIO", before);
    EXPECT_EQ(desk.Held("chkEnGPIO"), shown);
    EXPECT_EQ(desk.Sent("chkEnGPIO"), T(sent));
  }
}

TEST(Gpio, TheTimerRefreshesEveryHalfSecondAndWritesNothing) {
  WindowDesk desk("frmGPIO");
  chip::PollEnabled = false;
  EXPECT_EQ(desk.Held("chkEnGPIO"), "0");
  const auto refreshes = [&desk](int milliseconds) {
    desk.board.TakeTraffic();
    desk.Advance(milliseconds);
    const Traffic sent = desk.board.TakeTraffic();
    EXPECT_EQ(Writes(sent), Traffic{});
    return sent.size() / 2;
  };
  for (const char* registers : {"03=01 09=5A 0A=C3 BF=A5", "03=FF 09=FF 0A=FF BF=5A", "03=01 09=00 0A=00 BF=FF"}) {
    Put(desk.board.Chip(), registers);
    EXPECT_NEAR(static_cast<double>(refreshes(5500)), 10, 1);
    EXPECT_EQ(desk.Held("chkEnGPIO"), "0") << "read when the window opens and never again";
  }
}

TEST(Gpio, AnOutputHasAListOfItsStatusAndAnInputATextWhichSwapWithTheNextRefresh) {
  WindowDesk desk("frmGPIO", "09=08 BF=05");  // GPIO 2 is an output
  // By the steps and the time that passes.
  for (const auto& [direction, wait, outputs] : {std::tuple{"0", 0, 0x02}, {"1", 0, 0x02}, {"1", 550, 0x06}}) {
    desk.Do(QString("cmbDir(2)=") + direction);
    desk.Advance(wait);
    for (int i = 0; i < 8; ++i) {
      const bool output = (outputs >> i & 1) != 0;
      EXPECT_EQ(desk.Get<QWidget>(*desk.window, QString("cmbStatus(%1)").arg(i)).isVisible(), output) << i;
      EXPECT_EQ(desk.Get<QLabel>(*desk.window, QString("lblStatus(%1)").arg(i)).isVisible(), !output) << i;
    }
    EXPECT_EQ(desk.Held("lblStatus(0) lblStatus(3)"), "Inactive|Active");
  }
  desk.board.Chip()[0xBF] = 0x08;
  desk.Advance(550);
  EXPECT_EQ(desk.Held("lblStatus(0) lblStatus(3)"), "Active|Inactive");
}

TEST(Gpio, ThePinsThatServeGpioAreTickedAndVidPlaysNoPart) {
  // The default chip gives no pin to GPIO.
  const std::vector<std::pair<const char*, const char*>> cases{
      {"10=7F", "0|0|0|0|0|0|0|0"}, {"10=6F", "1|0|0|0|0|0|0|0"}, {"10=77", "0|1|0|0|0|0|0|0"},
      {"10=7B", "0|0|1|0|0|0|0|0"}, {"10=7D", "0|0|0|1|0|0|0|0"}, {"10=EF", "1|0|0|0|0|0|0|0"},
      {"13=F4", "0|0|0|0|1|0|0|0"}, {"13=F8", "0|0|0|0|0|1|0|0"}, {"13=3C", "0|0|0|0|0|0|1|0"},
      {"13=CC", "0|0|0|0|0|0|0|1"}, {"13=7C", "0|0|0|0|0|0|0|0"}, {"13=DC", "0|0|0|0|0|0|0|0"},
  };
  WindowDesk desk("frmGPIO");
  for (const auto& [registers, ticked] : cases) {
    Put(desk.board.Chip(), "10=7F 13=FC");
    Put(desk.board.Chip(), registers);
    chip::ReadPinConfiguration();
    desk.board.TakeTraffic();
    dynamic_cast<windows::frmGPIO&>(*desk.window).UpdateGPIOStatus();
    EXPECT_EQ(desk.board.TakeTraffic(), T(kRefresh)) << "the ticks cost no transfer";
    EXPECT_EQ(desk.Held("chkPinEn(0..7)"), ticked) << registers;
  }
  for (int i = 0; i < 8; ++i) {
    EXPECT_FALSE(desk.Get<QWidget>(*desk.window, QString("chkPinEn(%1)").arg(i)).isEnabled());
  }
}

}  // namespace
}  // namespace zth::testing
