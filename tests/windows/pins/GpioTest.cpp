#include <random>

#include <QComboBox>
#include <QLabel>

#include "chip/PinModel.h"
#include "tests/windows/pins/PinsGround.h"
#include "windows/SharedState.h"
#include "windows/config/frmGPIO.h"

namespace zth::testing {
namespace {

Traffic Refresh() {
  return Concat(Block(0x09, 2), R(0xBF));
}

/// The list that stands for a bit of 0x09, 0x0A or 0xBF.
QString ListOf(int reg, int bit) {
  if (reg == 0xBF) return QString("cmbStatus(%1)").arg(bit);
  const int pin = bit / 2 + (reg == 0x0A ? 4 : 0);
  return QString(bit % 2 == 0 ? "cmbPolarity(%1)" : "cmbDir(%1)").arg(pin);
}

const std::vector<QString>& AllLists() {
  static const std::vector<QString> kAll = [] {
    std::vector<QString> names;
    for (const int reg : {0x09, 0x0A, 0xBF}) {
      for (int bit = 0; bit < 8; ++bit) names.push_back(ListOf(reg, bit));
    }
    return names;
  }();
  return kAll;
}

TEST(Gpio, OpeningReadsInOrderAndWritesNothingWhateverTheChipHolds) {
  std::mt19937 random(8);
  for (const auto buses : {Desk::Buses::Usb, Desk::Buses::Smbus}) {
    for (const int content : {0x00, 0xFF, -1}) {
      Desk desk(buses);
      desk.Start();
      for (auto& value : desk.board.Chip())
        value = static_cast<std::uint8_t>(content < 0 ? static_cast<int>(random() & 0xFF) : content);
      desk.Open("frmGPIO");
      EXPECT_EQ(desk.board.TakeTraffic(), Concat(R(0x03), Refresh()));
      EXPECT_TRUE(windows::GpioOpen);
    }
  }
}

/// One bit differs from all others: so does one list, and putting it right by hand sends all three registers, whole.
void ExpectOneListFor(int reg, int bit, int around, Desk& desk, windows::frmGPIO& window) {
  auto& registers = desk.board.Chip();
  for (const std::size_t each : {0x09U, 0x0AU, 0xBFU}) registers[each] = static_cast<std::uint8_t>(around);
  registers[static_cast<std::size_t>(reg)] = static_cast<std::uint8_t>(around ^ 1 << bit);
  window.UpdateGPIOStatus();
  for (const QString& list : AllLists()) {
    const bool one = (around != 0) != (list == ListOf(reg, bit));
    EXPECT_EQ(desk.Picked(window, list), one ? 1 : 0) << list.toStdString() << " for " << reg << "." << bit;
  }
  desk.board.TakeTraffic();
  desk.Pick(window, ListOf(reg, bit), around == 0 ? 0 : 1);
  EXPECT_EQ(desk.board.TakeTraffic(), Concat(W(0x09, around), W(0x0A, around), W(0xBF, around)));
}

TEST(Gpio, EachBitMovesOneListAndEachListOneBit) {
  for (const auto buses : {Desk::Buses::Usb, Desk::Buses::Smbus}) {
    Desk desk(buses);
    desk.Start();
    auto& window = dynamic_cast<windows::frmGPIO&>(desk.Open("frmGPIO"));
    for (int bit = 0; bit < 8; ++bit) {
      for (const int reg : {0x09, 0x0A, 0xBF}) {
        ExpectOneListFor(reg, bit, 0x00, desk, window);
        ExpectOneListFor(reg, bit, 0xFF, desk, window);
      }
    }
  }
}

TEST(Gpio, EnableChangesItsOwnBitAlone) {
  Desk desk;
  desk.Start();
  for (const int before : {0x00, 0x01, 0xFE, 0xFF, 0x5A}) {
    desk.board.Chip()[0x03] = static_cast<std::uint8_t>(before);
    auto& window = desk.Open("frmGPIO");
    EXPECT_EQ(desk.Checked(window, "chkEnGPIO"), before % 2 == 1);
    desk.board.TakeTraffic();
    desk.Press(window, "chkEnGPIO");
    EXPECT_EQ(desk.board.TakeTraffic(), Concat(R(0x03), W(0x03, before ^ 1)));
    window.Unload();
    Desk::Settle();
  }
}

TEST(Gpio, TheTimerRefreshesEveryHalfSecondAndWritesNothing) {
  Desk desk;
  desk.Start();
  auto& window = desk.Open("frmGPIO");
  const bool enabled = desk.Checked(window, "chkEnGPIO");
  desk.board.TakeTraffic();
  std::mt19937 random(9);
  int refreshes = 0;
  for (int round = 0; round < 200; ++round) {
    auto& registers = desk.board.Chip();
    for (const std::size_t reg : {0x03U, 0x09U, 0x0AU, 0xBFU}) registers[reg] = static_cast<std::uint8_t>(random());
    registers[0x03] = static_cast<std::uint8_t>((registers[0x03] & 0xFE) | (enabled ? 0 : 1));
    const FakeBoard::Registers before = registers;
    desk.Advance(550);
    EXPECT_EQ(registers, before);
    const Traffic traffic = desk.board.TakeTraffic();
    EXPECT_TRUE(Writes(traffic).empty());
    refreshes += static_cast<int>(std::count(traffic.begin(), traffic.end(), "usb B 58:09+2"));
    for (int bit = 0; bit < 8; ++bit) {
      EXPECT_EQ(desk.Picked(window, ListOf(0xBF, bit)), registers[0xBF] >> bit & 1);
      EXPECT_EQ(desk.Picked(window, ListOf(0x0A, bit)), registers[0x0A] >> bit & 1);
    }
    // Read when the window opens and never again.
    EXPECT_EQ(desk.Checked(window, "chkEnGPIO"), enabled);
  }
  EXPECT_NEAR(refreshes, 200, 2);

  desk.Press(window, "cmdCancel");
  EXPECT_FALSE(windows::GpioOpen);
  desk.board.TakeTraffic();
  desk.Advance(2000);
  const Traffic after = desk.board.TakeTraffic();
  EXPECT_EQ(std::count(after.begin(), after.end(), "usb B 58:09+2"), 0);
}

TEST(Gpio, AnOutputHasAListOfItsStatusAndAnInputATextWhichSwapWithTheNextRefresh) {
  Desk desk;
  desk.board.usbChips[0x58][0x09] = 0x08;  // GPIO 2 is an output
  desk.board.usbChips[0x58][0xBF] = 0x05;
  desk.Start();
  auto& window = dynamic_cast<windows::frmGPIO&>(desk.Open("frmGPIO"));
  const auto expectOutputs = [&](unsigned outputs) {
    for (int i = 0; i < 8; ++i) {
      const bool output = (outputs >> i & 1) != 0;
      EXPECT_EQ(desk.Get<QComboBox>(window, QString("cmbStatus(%1)").arg(i)).isVisible(), output) << i;
      EXPECT_EQ(desk.Get<QLabel>(window, QString("lblStatus(%1)").arg(i)).isVisible(), !output) << i;
    }
  };
  expectOutputs(0x02);
  EXPECT_EQ(desk.Text(window, "lblStatus(0)"), "Inactive");
  EXPECT_EQ(desk.Text(window, "lblStatus(3)"), "Active");
  desk.Pick(window, "cmbDir(2)", 1);
  expectOutputs(0x02);
  window.UpdateGPIOStatus();
  expectOutputs(0x06);
  desk.board.Chip()[0xBF] = 0x08;
  window.UpdateGPIOStatus();
  EXPECT_EQ(desk.Text(window, "lblStatus(0)"), "Active");
  EXPECT_EQ(desk.Text(window, "lblStatus(3)"), "Inactive");
}

TEST(Gpio, ThePinsThatServeGpioAreTickedAndVidPlaysNoPart) {
  struct Case {
    int reg, value;
    unsigned ticked;
  };
  // The default chip gives no pin to GPIO.
  const std::vector<Case> cases{
      {0x10, 0x7F, 0x00}, {0x10, 0x6F, 0x01}, {0x10, 0x77, 0x02}, {0x10, 0x7B, 0x04},
      {0x10, 0x7D, 0x08}, {0x10, 0xEF, 0x01}, {0x13, 0xF4, 0x10}, {0x13, 0xF8, 0x20},
      {0x13, 0x3C, 0x40}, {0x13, 0xCC, 0x80}, {0x13, 0x7C, 0x00}, {0x13, 0xDC, 0x00},
  };
  Desk desk;
  desk.Start();
  auto& window = dynamic_cast<windows::frmGPIO&>(desk.Open("frmGPIO"));
  for (const Case& row : cases) {
    desk.board.Chip()[0x10] = 0x7F;
    desk.board.Chip()[0x13] = 0xFC;
    desk.board.Chip()[static_cast<std::size_t>(row.reg)] = static_cast<std::uint8_t>(row.value);
    chip::ReadPinConfiguration();
    desk.board.TakeTraffic();
    window.UpdateGPIOStatus();
    EXPECT_EQ(desk.board.TakeTraffic(), Refresh()) << "the ticks cost no transfer";
    for (int i = 0; i < 8; ++i) {
      const QString box = QString("chkPinEn(%1)").arg(i);
      EXPECT_EQ(desk.Checked(window, box), (row.ticked >> i & 1) != 0) << row.reg << "=" << row.value << " " << i;
      EXPECT_FALSE(desk.Get<QWidget>(window, box).isEnabled());
    }
  }
}

}  // namespace
}  // namespace zth::testing
