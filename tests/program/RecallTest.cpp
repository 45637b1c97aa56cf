#include <map>
#include <sstream>
#include <vector>

#include <QTemporaryDir>
#include <gmock/gmock.h>

#include "chip/RegMapStuff.h"
#include "tests/support/SimulatedDesk.h"
#include "tests/support/Steps.h"

namespace zth::testing {
namespace {

/// The registers that a file holds, but for the duties of outputs that follow a temperature, and the speeds of all fans
/// in hundreds.
struct State {
  std::map<int, int> registers;
  std::vector<double> hundredsOfRpm;
};

State StateOf(SimulatedDesk& board) {
  board.desk.Advance(60000);
  board.CatchUp();
  State state;
  for (const chip::RegisterEntry& row : chip::RegisterTable) {
    const bool duty = row.Address >= 0xAA && row.Address <= 0xAD;
    if (!row.ReadOnly && !duty) state.registers[row.Address] = board.Register(static_cast<std::uint8_t>(row.Address));
  }
  for (int fan = 0; fan < 8; ++fan) {
    state.hundredsOfRpm.push_back(board.usb.TheBus().First()->ThePlant().Rpm(fan) / 100);
  }
  return state;
}

void ExpectSame(const State& now, const State& saved) {
  EXPECT_EQ(now.registers, saved.registers);
  EXPECT_THAT(now.hundredsOfRpm, ::testing::Pointwise(::testing::DoubleNear(1), saved.hundredsOfRpm));
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
    State saved;
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
      ExpectSame(StateOf(board), saved);
    }
    SimulatedDesk fresh;
    fresh.desk.Start();
    fresh.desk.Advance(10000);
    PressInSave(fresh, "cmdRecall", file);
    ExpectSame(StateOf(fresh), saved);
  }
}

}  // namespace
}  // namespace zth::testing
