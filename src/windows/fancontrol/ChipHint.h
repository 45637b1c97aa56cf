#pragma once

#include <cstdint>
#include <functional>

class QLabel;
class QLineEdit;

namespace zth::windows {

/// What the chip holds, in degrees C, told beside a box of degrees that the chip has moved away from: "chip: 47". It
/// goes by what the monitor polls, and only by what was polled after the box was last read or written.
class ChipHint {
 public:
  using Polled = std::function<int()>;  ///< the register's degrees as polled last

  /// Writing the box keeps the time by itself. Both must outlive the box's handlers.
  ChipHint(QLineEdit& box, QLabel& label, Polled polled);
  ChipHint(const ChipHint&) = delete;
  ChipHint& operator=(const ChipHint&) = delete;

  /// The box shows what the chip holds at this time.
  void Settle();

  /// Shows or hides the value; never shows one while the box is another chip's.
  void Refresh(bool otherChip);

 private:
  bool IsMoved() const;

  QLineEdit& box_;
  QLabel& label_;
  Polled polled_;
  std::uint32_t readsThen_ = 0;
};

/// A register that the monitor polls, as the chip holds it: the demo's lift is taken off. Empty for any other register.
ChipHint::Polled PolledDegrees(int reg);

}  // namespace zth::windows
