#include <QTemporaryDir>

#include "chip/RegMapStuff.h"
#include "tests/support/SimulatedDesk.h"
#include "tests/support/Steps.h"

namespace zth::testing {
namespace {

/// The speeds of all fans, and what stands in the registers that a file holds.
std::string StateOf(SimulatedDesk& board) {
  board.desk.Advance(20000);
  board.CatchUp();
  std::string text;
  for (int fan = 0; fan < 8; ++fan) {
    text += std::to_string(static_cast<int>(board.usb.TheBus().First()->ThePlant().Rpm(fan) / 20)) + " ";
  }
  for (const chip::RegisterEntry& row : chip::RegisterTable) {
    if (!row.ReadOnly) text += std::to_string(board.Register(static_cast<std::uint8_t>(row.Address))) + " ";
  }
  return text;
}

void PressInSave(SimulatedDesk& board, const char* button, const QString& file) {
  board.desk.fileDialogs.script = {file};
  Do(board.desk.Open("frmSave"), button);
  Desk::Settle();
}

/// What the user has done before saving; "" for a board as it comes.
TEST(Recall, OfAFileJustSavedBringsAFreshBoardToTheSameState) {
  const QTemporaryDir folder;
  const QString file = folder.filePath("a.sav");
  for (const char* writes : {"", "07=FF 2C=FF 02=40", "5C=5A 21=12 2C=E0 07=0F", "14=04 21=91", "10=3F 12=02 26=B0"}) {
    SCOPED_TRACE(writes);
    std::string saved;
    {
      SimulatedDesk board;
      board.desk.Start();
      std::istringstream words(writes);
      for (std::string word; words >> word;) {
        board.usb.TheBus().Write(0x58, static_cast<std::uint8_t>(std::stoi(word.substr(0, 2), nullptr, 16)),
                                 static_cast<std::uint8_t>(std::stoi(word.substr(3), nullptr, 16)));
      }
      board.desk.Advance(10000);
      PressInSave(board, "cmdsave", file);
      saved = StateOf(board);
      PressInSave(board, "cmdRecall", file);
      EXPECT_EQ(StateOf(board), saved) << "on the board that it was saved from";
    }
    SimulatedDesk fresh;
    fresh.desk.Start();
    fresh.desk.Advance(10000);
    PressInSave(fresh, "cmdRecall", file);
    EXPECT_EQ(StateOf(fresh), saved) << "on a fresh board";
  }
}

}  // namespace
}  // namespace zth::testing
