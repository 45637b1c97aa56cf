#pragma once

#include <cstdint>
#include <functional>

class QLabel;
class QLineEdit;

namespace zth::windows {

/// Shows the chip's value in degrees C beside a box if the chip itself has changed it: "chip: 47". It uses the values
/// polled by the monitor, and only those polled after the box was last read or written.
class ChipHint {
 public:
  using Polled = std::function<int()>;  ///< the register's degrees as last polled

  /// Writing to the box records the time automatically. Both must outlive the box's handlers.
  ChipHint(QLineEdit& box, QLabel& label, Polled polled);
  ChipHint(const ChipHint&) = delete;
  ChipHint& operator=(const ChipHint&) = delete;

  /// Records that the box shows the chip's value as of now.
  void Settle();

  /// Shows or hides the value; never shows it while the box belongs to another chip.
  void Refresh(bool otherChip);

 private:
  bool IsMoved() const;

  QLineEdit& box_;
  QLabel& label_;
  Polled polled_;
  std::uint32_t readsThen_ = 0;
};

/// The chip's value of a polled register, without the demo's offset. Empty for any other register.
ChipHint::Polled PolledDegrees(int reg);

}  // namespace zth::windows
