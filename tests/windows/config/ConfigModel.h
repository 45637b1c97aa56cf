#pragma once

#include <vector>

#include "tests/support/Steps.h"

/// The configuration windows as the chip's data sheet has them, written down apart from the windows' own tables.
namespace zth::testing {

enum class Look { Ticked, Unticked, Position, LastTwoAlike, LastThreeAlike, Duty, Number };

struct Control {
  QString name;
  int reg;
  int low;
  int width;
  Look look;
  bool hidden = false;

  unsigned Mask() const { return ((1U << width) - 1) << low; }
};

struct WindowModel {
  QString name;
  std::vector<Control> controls;
  std::vector<std::pair<int, unsigned>> kept;  ///< register and the bits that Apply keeps as they are, in its order
};

const std::vector<WindowModel>& AllWindows();
const WindowModel& Model(const QString& name);

/// num / den rounded to a whole number, a tie to the even one.
constexpr int HalfEven(int num, int den) {
  const int down = num / den;
  const int twice = num % den * 2;
  return twice > den || (twice == den && down % 2 == 1) ? down + 1 : down;
}

/// What a control shows of a register's byte, as Held() tells it.
QString Shown(const Control& control, unsigned byte);

/// The field that goes out for what is shown.
unsigned Sent(const Control& control, const QString& shown);

/// What Apply leaves in a register that held `before`, with nothing touched between load and Apply.
std::uint8_t Untouched(const WindowModel& window, int reg, unsigned before);

}  // namespace zth::testing
