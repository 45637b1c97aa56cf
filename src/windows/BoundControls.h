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

/// A row with its control, and what that held when the chip was last read or written.
struct Bound {
  const Binding* row;
  std::unique_ptr<Editor> editor;
  QString applied;
  std::optional<unsigned> field;  ///< what its bits held in the chip then

  bool IsPending() const { return editor->Held() != applied; }
};

/// The controls of a table, found in their window by name: carries values between them and the chip, step by step.
class BoundControls final : public QObject {
 public:
  using Changed = std::function<void(const Binding& row)>;
  /// Told of a row whose control has changed; of none when all count as applied.
  using Watch = std::function<void(const Binding* row)>;

  /// All of the table's controls must stand in `window`: checks and options, lists with their items, text boxes. The
  /// table must outlive this. Without `live` changes wait for Apply. With it each change of a control, by code as
  /// well, runs `live`, which may Write.
  BoundControls(QWidget& window, std::span<const Binding> rows, Changed live = {});

  /// Does each read in turn and sets the controls of what it read, in the table's order. Setting runs the controls'
  /// handlers. All controls count as applied after it.
  void Load(std::span<const ReadStep> reads);
  /// The same again and again in a window that has been loaded: a read that fails, as far as the link's library tells,
  /// leaves its controls as they are. False when there was one.
  bool Refresh(std::span<const ReadStep> reads);

  /// Does each write in turn. The controls of the registers written count as applied after it.
  void Apply(std::span<const WriteStep> writes);

  /// Writes what one control holds: its register is read immediately before and only the row's bits change, unless the
  /// row fills the register or goes out alone. What a text gives beyond its own field is or-ed in with the rest.
  void Write(const Binding& row) const;

  /// Something has been changed and not applied.
  bool HoldsChanges() const;

  /// `old` with the bits of the register's rows replaced by what the controls hold. What a text gives beyond its own
  /// field is or-ed in with the rest.
  std::uint8_t Compose(std::uint8_t reg, unsigned old = 0) const;

  /// The text that a control of the table shows.
  std::string TextOf(const ControlName& control) const;

  std::span<const Bound> Bounds() const { return bounds_; }
  void SetWatch(Watch watch) { watch_ = std::move(watch); }

 private:
  bool Read(std::span<const ReadStep> reads, bool keepsUnread);
  void Tell(const Binding* row) const;

  std::vector<Bound> bounds_;  ///< in the table's order
  Changed live_;
  Watch watch_;
  bool loading_ = false;
};

}  // namespace zth::windows
