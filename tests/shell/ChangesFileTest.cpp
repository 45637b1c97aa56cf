#include <QDir>
#include <QTemporaryDir>
#include <QTreeWidget>
#include <gmock/gmock.h>

#include "tests/support/Steps.h"

namespace zth::testing {
namespace {

using ::testing::IsEmpty;

constexpr char kQuestion[] = "The last session was not ended in order. It had changed 2 registers of 58h on USB.";

/// Sessions of one user, one after the other on the same chip.
class ChangesFileTest : public ::testing::Test {
 protected:
  /// A start on registers as the last session has left them. `answer` is picked if the program asks.
  void Begin(const QString& answer = {}) {
    if (desk) chip = desk->board.usbChips[0x58];
    desk.reset();
    desk = std::make_unique<Desk>();
    if (chip) desk->board.usbChips[0x58] = *chip;
    desk->process.stateFolder = folder.path();
    if (!answer.isEmpty()) desk->prompts.picks = {answer};
    desk->Start();
  }

  void Change() {
    auto& window = desk->Open("frmEDO");
    Do(window, "chkEDOEnable(0)=1; chkEDO1Mask(7)=1; cmdApply");
    desk->Advance(1000);
  }

  QStringList Files() const { return QDir(folder.path()).entryList({"changes.txt"}, QDir::Files); }

  QTemporaryDir folder;
  std::unique_ptr<Desk> desk;
  std::optional<FakeBoard::Registers> chip;
};

TEST_F(ChangesFileTest, AfterAKillTheNextStartPutsBackWhatWasChangedIfTheUserSaysSo) {
  Begin();
  Change();
  Begin("&Put them back");
  ASSERT_EQ(desk->prompts.choicesShown.size(), 1U);
  EXPECT_EQ(desk->prompts.choicesShown[0].text, kQuestion);
  EXPECT_EQ(desk->board.usbChips[0x58][0x16], 0x00);
  EXPECT_EQ(desk->board.usbChips[0x58][0x37], 0x00);
  desk->Advance(1000);
  EXPECT_THAT(Files(), IsEmpty());
}

TEST_F(ChangesFileTest, NothingIsReadOrWrittenBeforeTheUserSaysSo) {
  Begin();
  const Traffic plain = desk->board.traffic;
  Change();
  Begin("&Show them");
  EXPECT_EQ(desk->board.traffic, plain);
  auto* changes = desk->Main().FindWindow("frmChanges");
  ASSERT_NE(changes, nullptr);
  EXPECT_EQ(Desk::Get<QTreeWidget>(*changes, "trvActions").topLevelItem(0)->text(2), "in an earlier session");
  // Killed again, after a change more.
  auto& window = desk->Open("frmEDO");
  Do(window, "chkEDOEnable(0)=0; chkEDO2Mask(7)=1; cmdApply");
  desk->Advance(1000);
  Begin("&Put them back");
  EXPECT_EQ(desk->prompts.choicesShown[0].text, kQuestion) << "37h and 38h";
  for (const int reg : {0x16, 0x37, 0x38}) EXPECT_EQ(desk->board.usbChips[0x58][static_cast<std::size_t>(reg)], 0x00);
}

TEST_F(ChangesFileTest, AValueThatIsNoLongerTheOneWrittenStays) {
  Begin();
  Change();
  desk->board.usbChips[0x58][0x16] = 0x03;
  desk->board.usbChips[0x58][0x37] = 0x00;
  Begin("&Put them back");
  auto* changes = desk->Main().FindWindow("frmChanges");
  EXPECT_EQ(Desk::Get<QTreeWidget>(*changes, "lstLeft").topLevelItemCount(), 0)
      << "EDO1 is as it was written, EDO2 was not";
  EXPECT_EQ(desk->board.usbChips[0x58][0x16], 0x02);
}

TEST_F(ChangesFileTest, NothingIsOfferedAfterAnExitOrAForgetOrWhereNothingCanBeKept) {
  Begin();
  Change();
  EXPECT_EQ(Files().size(), 1);
  EXPECT_TRUE(desk->Main().close());
  EXPECT_THAT(Files(), IsEmpty());
  Begin();
  Put(desk->board.usbChips[0x58], "16=00 37=00");
  Change();
  Begin("&Forget them");
  Begin();
  EXPECT_THAT(desk->prompts.choicesShown, IsEmpty());
}

TEST_F(ChangesFileTest, ASecondProgramLeavesTheJournalOfTheFirstAlone) {
  Begin();
  Change();
  const auto claim = desk->files.Claim(folder.filePath("changes.txt"));
  EXPECT_EQ(claim, nullptr) << "the running program has it";
  desk->files.locked = true;
  auto& window = desk->Open("frmEDO");
  Do(window, "chkEDO2Mask(7)=1; cmdApply");
  desk->Advance(1000);
  EXPECT_TRUE(desk->process.ends.empty()) << "a file that cannot be written is no reason to end";
}

}  // namespace
}  // namespace zth::testing
