#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include <QObject>
#include <QString>

#include "windows/Bindings.h"

class QWidget;

namespace zth::windows {

/// "chkEnTach(0)".
QString NameOf(const ControlName& control);

/// A row's caption with its number put in; empty for a control that nobody sees.
QString CaptionOf(const Binding& row);

/// Where a row's bits stand, as its tool tip tells it: "0x0D bit 0, THERM Configuration", "0x21 bits 7:5, PWM1 Config".
QString PlaceOf(const Binding& row);

/// The controls of a table, found in their window by name. Carries values between them and the chip, step by step, and
/// marks by colour and weight what has been changed and not applied yet, on the tab of a page as well. A text box that
/// the chip would read back as another value than it shows is marked in a warning colour, and its tool tip tells the
/// value that would go out; it is not refused. So is a control that nobody has changed and that would not give back
/// what the chip holds, since its texts have no exact one for that: its tool tip names both.
class BoundControls final : public QObject {
 public:
  /// All of the table's controls must stand in `window`: checks and options, lists with their items, text boxes. The
  /// table must outlive this.
  BoundControls(QWidget& window, std::span<const Binding> rows);

  /// Does each read in turn and sets the controls of what it read, in the table's order. Setting runs the controls'
  /// handlers. All controls count as applied after it.
  void Load(std::span<const ReadStep> reads);

  /// Does each write in turn. The controls of the registers written count as applied after it.
  void Apply(std::span<const WriteStep> writes);

  /// Something has been changed and not applied.
  bool HoldsChanges() const;

  /// `old` with the bits of the register's rows replaced by what the controls hold. What a text gives beyond its own
  /// field is or-ed in with the rest.
  std::uint8_t Compose(std::uint8_t reg, unsigned old = 0) const;

  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  enum class Mark : std::uint8_t { None, Pending, Odd, PendingOdd };
  struct Bound {
    const Binding* row;
    QWidget* control;
    QString place;                  ///< where its bits stand
    QString applied;                ///< what it held when the chip was last read or written
    std::optional<unsigned> field;  ///< what its bits held in the chip then
    Mark mark = Mark::None;
  };

  void Hang(const Bound& bound);
  void Show(Bound& bound, unsigned whole);
  void Judge(Bound& bound);
  void JudgeAll();
  void JudgeRegister(std::uint8_t reg);
  void Paint(const Bound& bound) const;
  void PaintTabs() const;
  void Repaint();

  QWidget& window_;
  std::vector<Bound> bounds_;
  bool loading_ = false;
};

}  // namespace zth::windows
