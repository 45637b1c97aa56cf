#include "tests/support/Steps.h"

namespace zth::testing {
namespace {

void TickOnly(const QWidget& window, const std::set<int>& options) {
  for (int i = 0; i < 7; ++i) Desk::Check(window, QString("chkOption(%1)").arg(i), options.count(i) != 0);
}

TEST(EasySetup, OpensWithTheSameTicksEachTime) {
  WindowDesk desk("frmEasySetup");
  for (int round = 0; round < 2; ++round, desk.Reopen()) {
    EXPECT_EQ(desk.Held("chkOption(0..6) txtOption"), "1|1|1|1|1|0|0|1");
    TickOnly(*desk.window, {5, 6});
    EXPECT_EQ(desk.Sent("txtOption=4; cmdClose"), Traffic{});
    EXPECT_FALSE(desk.IsOpen());
  }
}

TEST(EasySetup, OkRunsTheTickedOptionsInOrderOnEitherLink) {
  for (const auto buses : {Desk::Buses::Usb, Desk::Buses::Smbus}) {
    WindowDesk desk("frmEasySetup", buses, [](Desk& each) { Put(each.board.Chip(), "07=C0 01=01 02=80"); });
    TickOnly(*desk.window, {0, 1, 2, 3, 4, 5, 6});
    EXPECT_EQ(desk.Sent("cmdApply"),
              T("W14=01 B10+4 P4A=3F P48=FF R07 W07=CF R01 W01=21 W2C=FF R02 W02=A0 R01 W01=29"));
    EXPECT_FALSE(desk.IsOpen()) << "OK closes the window";
  }
}

TEST(EasySetup, AnOptionSetsItsOwnBitsAndOneThatIsNotTickedDoesNothing) {
  const std::tuple<int, unsigned, int> rows[]{{-1, 0U, 0},      {1, 0x07U, 0x0F}, {2, 0x01U, 0x20}, {3, 0U, 0},
                                              {4, 0x2CU, 0xFF}, {5, 0x02U, 0x20}, {6, 0x01U, 0x08}};
  for (const auto& [option, reg, bits] : rows) {
    for (const char* content : {"00..FF=00", "00..FF=5A", "00..FF=FF"}) {
      WindowDesk desk("frmEasySetup", content);
      FakeBoard::Registers expected = desk.board.Chip();
      expected[reg] = static_cast<std::uint8_t>(expected[reg] | bits);
      TickOnly(*desk.window, {option});
      desk.Do("txtOption=nonsense; chkStartUp=1; cmdApply");  // the number is ignored
      EXPECT_EQ(desk.board.Chip(), expected) << option;
      EXPECT_EQ(desk.settings.values["OpenEasySetup"], "True");
    }
  }
}

TEST(EasySetup, TheOptionNumberIsAcceptedOrRejectedAsAWhole) {
  constexpr int kNone = -1;
  const std::pair<const char*, int> rows[]{{"1", 0x01},    {"2", 0x02},   {"3", 0x04},   {"4", 0x08},    {"5", 0x10},
                                           {"2.5", 0x02},  {"5.5", 0x10}, {"0.5", 0},    {" 3 ", 4},     {"5.999", 16},
                                           {"0", kNone},   {"6", kNone},  {"-1", kNone}, {"1e3", kNone}, {"", kNone},
                                           {"two", kNone}, {"3x", kNone}, {"1 2", kNone}};
  for (const auto& [text, sent] : rows) {
    SCOPED_TRACE(text);
    WindowDesk desk("frmEasySetup");
    const bool refused = sent == kNone;
    if (refused) desk.prompts.script.push_back(platform::BoxAnswer::Ok);
    const Traffic writes = Writes(desk.Sent(QString("chkStartUp=1; txtOption=%1; cmdApply").arg(text)));
    EXPECT_EQ(writes.empty() ? "" : writes.front(), refused ? "" : W(0x14, sent));
    EXPECT_EQ(writes.empty() && desk.IsOpen(), refused) << "the window stays";
    EXPECT_EQ(desk.settings.values["OpenEasySetup"], refused ? "False" : "True") << "whether the setting is saved";
    ASSERT_EQ(desk.prompts.shown.size(), refused ? 1U : 0U);
    if (!refused) continue;
    EXPECT_EQ(desk.prompts.shown[0].text, "Option value must be in range 1-5");
    EXPECT_EQ(desk.prompts.shown[0].buttons, platform::BoxButtons::Ok);
  }
}

TEST(EasySetup, OpensAtTheStartUnlessTheSettingSaysFalse) {
  const std::vector<std::pair<std::optional<const char*>, bool>> cases{
      {std::nullopt, true}, {"True", true}, {"False", false}, {"false", false}, {"", true}};
  for (const auto& [stored, opens] : cases) {
    Desk desk;
    desk.settings.values.clear();
    if (stored) desk.settings.values["OpenEasySetup"] = *stored;
    desk.Start();
    EXPECT_EQ(desk.Main().FindWindow("frmEasySetup") != nullptr, opens);
    auto& window = desk.Open("frmEasySetup");
    EXPECT_EQ(desk.Checked(window, "chkStartUp"), opens) << "the box tells what the start does";
    const auto before = desk.settings.values;
    Do(window, "chkStartUp; cmdClose");
    EXPECT_EQ(desk.settings.values, before) << "Cancel saves nothing";
    Desk::Settle();

    auto& again = desk.Open("frmEasySetup");
    TickOnly(again, {});
    Do(again, "chkStartUp; cmdApply");
    EXPECT_EQ(desk.settings.values["OpenEasySetup"], opens ? "False" : "True");
    EXPECT_TRUE(Writes(desk.board.TakeTraffic()).empty());
  }
}

TEST(EasySetup, TheGraphsOpenAtTheirPlace) {
  for (const auto& ticked : {std::set<int>{}, {3}}) {
    WindowDesk desk("frmEasySetup");
    TickOnly(*desk.window, ticked);
    desk.Do("cmdApply");
    EXPECT_EQ(desk.Main().FindWindow("frmGraph") != nullptr, !ticked.empty());
    EXPECT_TRUE(ticked.empty() || desk.Open("frmGraph").parentWidget()->pos() == QPoint(33, 33)) << "500 twips";
  }
}

}  // namespace
}  // namespace zth::testing
