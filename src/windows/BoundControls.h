#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <vector>

#include <QObject>

#include "windows/Editors.h"

namespace zth::windows {

/// A row with its control, and the control's state when the chip was last read or written.
struct Bound {
  const Binding* row;
  std::unique_ptr<Editor> editor;
  QString applied;
  std::optional<unsigned> field;  ///< the value of its bits in the chip at that time

  bool IsPending() const { return editor->Held() != applied; }
};

/// The controls of a table, found by name in their window. Transfers values between them and the chip, step by step.
class BoundControls final : public QObject {
 public:
  using Changed = std::function<void(const Binding& row)>;
  /// Called with a row whose control has changed, or with null when all controls count as applied.
  using Watch = std::function<void(const Binding* row)>;

  /// All of the table's controls must exist in `window`: checks and options, lists with their items, text boxes. The
  /// table must outlive this. Without `live`, changes wait for Apply. With it, every change of a control, including by
  /// code, calls `live`, which may call Write.
  BoundControls(QWidget& window, std::span<const Binding> rows, Changed live = {});

  /// Performs the reads in order and sets the controls of the registers read, in table order. Setting a control runs
  /// its handlers. All controls count as applied afterwards.
  void Load(std::span<const ReadStep> reads);
  /// Repeats the reads in a window that has been loaded. When the link's library reports that a read failed, that
  /// read's controls stay as they are. False when a read failed.
  bool Refresh(std::span<const ReadStep> reads);

  /// Performs the writes in order. The controls of the written registers count as applied afterwards.
  void Apply(std::span<const WriteStep> writes);

  /// Writes one control's value: reads its register immediately before and changes only the row's bits, unless the row
  /// fills the register or is written alone. Bits of a text's value outside its field are ORed in.
  void Write(const Binding& row);

  /// True if a change has not been applied.
  bool HoldsChanges() const;

  /// `old` with the bits of the register's rows replaced by the controls' values. Bits of a text's value outside its
  /// field are ORed in.
  std::uint8_t Compose(std::uint8_t reg, unsigned old = 0) const;

  /// The text shown by a control of the table.
  std::string TextOf(const ControlName& control) const;
  /// The control's bits in the chip when they were last read or written; 0 before the first time.
  unsigned FieldOf(const ControlName& control) const;

  std::span<const Bound> Bounds() const { return bounds_; }
  void SetWatch(Watch watch) { watch_ = std::move(watch); }

 private:
  bool Read(std::span<const ReadStep> reads, bool keepsUnread);
  void Tell(const Binding* row) const;
  const Bound& BoundTo(const ControlName& control) const;

  std::vector<Bound> bounds_;  ///< in table order
  Changed live_;
  Watch watch_;
  bool loading_ = false;
};

}  // namespace zth::windows
