#pragma once

#include <vector>

#include "tests/support/Steps.h"

/// The configuration windows according to the chip's data sheet, written independently of the windows' own tables.
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
  std::vector<std::pair<int, unsigned>> kept;  ///< register and the bits that Apply keeps, in its order
};

const std::vector<WindowModel>& AllWindows();
const WindowModel& Model(const QString& name);

/// num / den rounded to a whole number, ties to the even one.
constexpr int HalfEven(int num, int den) {
  const int down = num / den;
  const int twice = num % den * 2;
  return twice > den || (twice == den && down % 2 == 1) ? down + 1 : down;
}

/// What a control shows of a register's byte, in the form of Held().
QString Shown(const Control& control, unsigned byte);

/// The field that is written for what is shown.
unsigned Sent(const Control& control, const QString& shown);

/// The value of a register that held `before`, after Apply with nothing touched since the load.
std::uint8_t Untouched(const WindowModel& window, int reg, unsigned before);

}  // namespace zth::testing
