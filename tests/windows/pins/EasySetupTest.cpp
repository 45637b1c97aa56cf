#include <optional>

#include <QLineEdit>

#include "tests/windows/pins/PinsGround.h"
#include "windows/config/frmEasySetup.h"

namespace zth::testing {
namespace {

QString Option(int i) {
  return QString("chkOption(%1)").arg(i);
}

void TickOnly(Desk& desk, windows::ChildWindow& window, const std::set<int>& options) {
  for (int i = 0; i < 7; ++i) desk.Check(window, Option(i), options.count(i) != 0);
}

TEST(EasySetup, OpensWithTheSameTicksEachTimeAndReadsNothing) {
  Desk desk;
  desk.Start();
  for (int round = 0; round < 2; ++round) {
    auto& window = desk.Open("frmEasySetup");
    for (int i = 0; i < 7; ++i) EXPECT_EQ(desk.Checked(window, Option(i)), i < 5) << i;
    EXPECT_EQ(desk.Text(window, "txtOption"), "1");
    EXPECT_TRUE(desk.board.TakeTraffic().empty());
    TickOnly(desk, window, {5, 6});
    desk.Type(window, "txtOption", "4");
    desk.Press(window, "cmdClose");
    EXPECT_TRUE(desk.board.TakeTraffic().empty());
    EXPECT_EQ(desk.Main().FindWindow("frmEasySetup"), nullptr);
    Desk::Settle();
  }
}

TEST(EasySetup, OkRunsTheTickedOptionsInOrderOnEitherLink) {
  for (const auto buses : {Desk::Buses::Usb, Desk::Buses::Smbus}) {
    Desk desk(buses);
    desk.Start();
    auto& registers = desk.board.Chip();
    registers[0x07] = 0xC0;
    registers[0x01] = 0x01;
    registers[0x02] = 0x80;
    auto& window = desk.Open("frmEasySetup");
    TickOnly(desk, window, {0, 1, 2, 3, 4, 5, 6});
    desk.Press(window, "cmdApply");
    EXPECT_EQ(desk.board.TakeTraffic(),
              Concat(W(0x14, 0x01), PinHook({"usb P 4A=3F", "usb P 48=FF"}), R(0x07), W(0x07, 0xCF), R(0x01),
                     W(0x01, 0x21), W(0x2C, 0xFF), R(0x02), W(0x02, 0xA0), R(0x01), W(0x01, 0x29)));
    EXPECT_EQ(desk.Main().FindWindow("frmEasySetup"), nullptr) << "OK closes the window";
  }
}

TEST(EasySetup, AnOptionSetsItsOwnBitsAndOneThatIsNotTickedDoesNothing) {
  struct Case {
    int option;
    int reg;
    int bits;
  };
  const std::vector<Case> cases{{-1, 0, 0},      {1, 0x07, 0x0F}, {2, 0x01, 0x20}, {3, 0, 0},
                                {4, 0x2C, 0xFF}, {5, 0x02, 0x20}, {6, 0x01, 0x08}};
  for (const Case& row : cases) {
    for (const int content : {0x00, 0x5A, 0xFF}) {
      Desk desk;
      desk.Start();
      auto& registers = desk.board.Chip();
      registers.fill(static_cast<std::uint8_t>(content));
      FakeBoard::Registers expected = registers;
      auto& after = expected[static_cast<std::size_t>(row.reg)];
      after = static_cast<std::uint8_t>(after | row.bits);
      auto& window = desk.Open("frmEasySetup");
      TickOnly(desk, window, {row.option});
      desk.Type(window, "txtOption", "nonsense");  // not looked at
      desk.Check(window, "chkStartUp", true);
      desk.Press(window, "cmdApply");
      EXPECT_EQ(registers, expected) << row.option;
      EXPECT_EQ(desk.settings.values["OpenEasySetup"], "True");
    }
  }
}

TEST(EasySetup, TheOptionsNumberIsTakenOrRefusedAsAWhole) {
  struct Case {
    const char* text;
    std::optional<int> sent;
  };
  const std::vector<Case> cases{
      {"1", 0x01},   {"2", 0x02}, {"3", 0x04},   {"4", 0x08},   {"5", 0x10}, {"2.5", 0x02},
      {"5.5", 0x10}, {"0.5", 0},  {" 3 ", 0x04}, {"5.999", 16}, {"0", {}},   {"6", {}},
      {"-1", {}},    {"1e3", {}}, {"", {}},      {"two", {}},   {"3x", {}},  {"1 2", {}},
  };
  for (const Case& row : cases) {
    Desk desk;
    desk.Start();
    auto& window = desk.Open("frmEasySetup");
    desk.Check(window, "chkStartUp", true);
    desk.Type(window, "txtOption", row.text);
    if (!row.sent) desk.prompts.script.push_back(platform::BoxAnswer::Ok);
    desk.Press(window, "cmdApply");
    const Traffic writes = Writes(desk.board.TakeTraffic());
    if (row.sent) {
      ASSERT_FALSE(writes.empty()) << row.text;
      EXPECT_EQ(writes.front(), W(0x14, *row.sent)) << row.text;
      continue;
    }
    EXPECT_TRUE(writes.empty()) << row.text;
    ASSERT_EQ(desk.prompts.shown.size(), 1U) << row.text;
    EXPECT_EQ(desk.prompts.shown[0].text, "Option value must be in range 1-5");
    EXPECT_EQ(desk.prompts.shown[0].buttons, platform::BoxButtons::Ok);
    EXPECT_EQ(desk.settings.values["OpenEasySetup"], "False") << "the setting is not saved";
    EXPECT_NE(desk.Main().FindWindow("frmEasySetup"), nullptr) << "the window stays";
  }
}

TEST(EasySetup, OpensAtTheStartUnlessTheSettingSaysFalse) {
  struct Case {
    std::optional<const char*> stored;
    bool opens;
  };
  const std::vector<Case> cases{{std::nullopt, true}, {"True", true}, {"False", false}, {"false", false}, {"", true}};
  for (const Case& row : cases) {
    Desk desk;
    desk.settings.values.clear();
    if (row.stored) desk.settings.values["OpenEasySetup"] = *row.stored;
    desk.Start();
    EXPECT_EQ(desk.Main().FindWindow("frmEasySetup") != nullptr, row.opens);
    auto& window = desk.Open("frmEasySetup");
    EXPECT_EQ(desk.Checked(window, "chkStartUp"), row.opens) << "the box tells what the start does";
    const auto before = desk.settings.values;
    desk.Press(window, "chkStartUp");
    desk.Press(window, "cmdClose");
    EXPECT_EQ(desk.settings.values, before) << "Cancel saves nothing";
    Desk::Settle();

    auto& again = desk.Open("frmEasySetup");
    TickOnly(desk, again, {});
    desk.Press(again, "chkStartUp");
    desk.Press(again, "cmdApply");
    EXPECT_EQ(desk.settings.values["OpenEasySetup"], row.opens ? "False" : "True");
    EXPECT_TRUE(Writes(desk.board.TakeTraffic()).empty());
  }
}

TEST(EasySetup, TheGraphsOpenAtTheirPlace) {
  Desk desk;
  desk.Start();
  ProbeDesktop desktop;
  ProbeWindow graphs("frmGraph", {desk.services, desktop});
  desktop.windows = {{"frmGraph", &graphs}};
  for (const bool ticked : {false, true}) {
    windows::frmEasySetup window({desk.services, desktop});
    window.Form_Load();
    TickOnly(desk, window, ticked ? std::set<int>{3} : std::set<int>{});
    desk.Press(window, "cmdApply");
    EXPECT_EQ(desktop.opened.size(), ticked ? 1U : 0U);
    EXPECT_EQ(graphs.pos(), ticked ? QPoint(33, 33) : QPoint(0, 0)) << "500 twips from the left and from the top";
  }
}

}  // namespace
}  // namespace zth::testing
