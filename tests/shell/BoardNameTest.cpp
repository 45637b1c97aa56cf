#include <QApplication>
#include <QComboBox>
#include <QImage>

#include "link/BoardName.h"
#include "link/Declarations.h"
#include "shell/frmSplash.h"
#include "tests/support/Steps.h"
#include "widgets/Strip.h"

/// Where the program says what it talks to.
namespace zth::testing {
namespace {

/// What a panel or a label of that name shows; "-" for nothing.
std::string Shown(const QWidget& window) {
  const auto& label = Desk::Get<QWidget>(window, "lblBoard");
  return label.isHidden() ? "-" : Held(window, "lblBoard");
}

/// What the splash shows after each step of the start, without repetitions.
std::string ShownBySplash(Desk& desk) {
  std::string all;
  desk.events.onPaint = [&all] {
    for (const QWidget* window : QApplication::topLevelWidgets()) {
      if (qobject_cast<const shell::frmSplash*>(window) == nullptr) continue;
      const std::string step = Held(*window, "lblProgInfo") + ": " + Shown(*window) + "\n";
      if (!all.ends_with(step)) all += step;
    }
  };
  desk.Start();
  desk.events.onPaint = nullptr;
  return all;
}

TEST(BoardName, FollowsTheLinkInUseFromTheSplashOnToThePictures) {
  Desk desk;
  desk.board.boardNames = {{"USBFunctions", "Adapter 7"}, {"smbus", "SMBus I801 (i2c-7)"}};
  EXPECT_EQ(ShownBySplash(desk),
            ": -\n"
            "Downloading Firmware...: Adapter 7\n"
            "Enumerating...: Adapter 7\n"
            "Connecting...: Adapter 7\n"
            "Searching for ZTH4718 on USB...: Adapter 7\n"
            "Searching for ZTH4718 on SMBus...: SMBus I801 (i2c-7)\n"
            "Searching for ZTH4718 on SMBus...: Adapter 7\n");
  auto& chart = Desk::Get<widgets::Strip>(desk.Open("frmGraph"), "stpGraph(3)");
  desk.board.TakeTraffic();
  for (const auto& [device, name] : {std::pair{"cmbDevices=1", "SMBus I801 (i2c-7)"}, {"cmbDevices=0", "Adapter 7"}}) {
    Do(desk.Main(), device);
    EXPECT_EQ(Shown(desk.Main()), name);
    chart.Files().CopyPicture();
    EXPECT_EQ(desk.clipboard.picture, chart.Picture(name));
  }
  EXPECT_TRUE(desk.board.traffic.empty()) << "a name is no transfer";
}

TEST(BoardName, OfAMakersLibraryIsNothingAndChangesNothing) {
  Desk desk;
  desk.board.boardNames = {{"smbus", "SMBus I801 (i2c-7)"}};
  EXPECT_EQ(ShownBySplash(desk).find("Adapter"), std::string::npos);
  EXPECT_EQ(Shown(desk.Main()), "-");
  auto& chart = Desk::Get<widgets::Strip>(desk.Open("frmGraph"), "stpGraph(3)");
  chart.Files().CopyPicture();
  EXPECT_EQ(desk.clipboard.picture, chart.Picture());
  Do(desk.Main(), "cmbDevices=1");
  EXPECT_EQ(Shown(desk.Main()), "SMBus I801 (i2c-7)");
  Do(desk.Main(), "cmbDevices=0");
  EXPECT_EQ(Shown(desk.Main()), "-") << "not the other library's";
}

TEST(BoardName, OfAForeignLibraryIsOneLineOfBoundedLength) {
  Desk desk;
  desk.Start();
  static std::string told;
  link::Bus.UsbFunctions.BoardName = [] { return told.c_str(); };
  const std::string smiles = [] {
    std::string text;
    for (int i = 0; i < link::kBoardNameLength; ++i) text += "\U0001F600";
    return text;
  }();
  const std::pair<std::string, std::string> rows[] = {
      {"Pr\u00FCfstand \u7814", "Pr\u00FCfstand \u7814"},
      {"  a\nb\t\x1B[31mc\x7F d  ", "a b[31mc d"},
      {"a\u202Eb\u2028c", "abc"},
      {std::string(10'000, 'x'), std::string(64, 'x')},
      {smiles + "\U0001F600", smiles},
      {"", ""},
      {"a\xFF", "a\uFFFD"},
  };
  for (const auto& [text, shown] : rows) {
    told = text;
    EXPECT_EQ(link::BoardName().toStdString(), shown);
  }
  link::Bus.UsbFunctions.BoardName = []() -> const char* { return nullptr; };
  EXPECT_EQ(link::BoardName(), "");
}

}  // namespace
}  // namespace zth::testing
