#pragma once

#include <memory>
#include <optional>
#include <string>

#include <QString>

#include "windows/Bindings.h"
#include "windows/Handlers.h"

class QWidget;

namespace zth::windows {

/// The objectName of a control, for example "chkEnTach(0)".
QString NameOf(const ControlName& control);

/// A row's caption with its number inserted; empty for a hidden control.
QString CaptionOf(const Binding& row);

/// The place of a row's bits for its tool tip: "0x0D bit 0, THERM Configuration", "0x21 bits 7:5, PWM1 Config".
QString PlaceOf(const Binding& row);
/// The same for bits of a register that has a name.
QString PlaceOf(int reg, const base::BitField& field);

/// The control of a row of any kind: a check or option button, a list, a text box. To add a kind, add a class in
/// Editors.cpp.
class Editor {
 public:
  /// Creates the control with its name, its items, and its caption if the control shows one.
  static std::unique_ptr<Editor> Make(const Binding& row, QWidget* parent);
  /// Uses the existing control in `window` with the row's name.
  static std::unique_ptr<Editor> Take(const Binding& row, const QWidget& window);

  Editor() = default;
  virtual ~Editor() = default;
  Editor(const Editor&) = delete;
  Editor& operator=(const Editor&) = delete;

  virtual QWidget& Control() const = 0;
  /// Runs the handler at every change, including by code; `wheel` tells what the wheel may do to a list.
  virtual void OnChanged(Handler handler, Wheel wheel) = 0;
  /// Shows a value of the row's field.
  virtual void Show(unsigned field) = 0;
  /// The control's value for its register, in place. A text may set bits outside its field.
  virtual unsigned Given() const = 0;
  /// The text shown by the control; "1" for a ticked button, otherwise "0".
  virtual QString Text() const = 0;
  /// The control's content as a text for comparison.
  virtual QString Held() const { return Text(); }
  /// What would be shown after writing and reading back `field`, if that differs from what the control shows.
  virtual std::optional<std::string> ReadsBackAs(unsigned /*field*/) const { return std::nullopt; }
  /// The longest text that the control may show; empty if its width is fixed.
  virtual QString WidestText() const { return {}; }

 private:
  virtual void Furnish() {}
  static std::unique_ptr<Editor> On(const Binding& row, const QWidget* window, QWidget* parent);
};

}  // namespace zth::windows
