#pragma once

#include <memory>
#include <optional>
#include <string>

#include <QString>

#include "windows/Bindings.h"
#include "windows/Handlers.h"

class QWidget;

namespace zth::windows {

/// "chkEnTach(0)".
QString NameOf(const ControlName& control);

/// A row's caption with its number put in; empty for a control that nobody sees.
QString CaptionOf(const Binding& row);

/// Where a row's bits stand, as its tool tip tells it: "0x0D bit 0, THERM Configuration", "0x21 bits 7:5, PWM1 Config".
QString PlaceOf(const Binding& row);
/// The same of bits of a register that has a name.
QString PlaceOf(int reg, const base::BitField& field);

/// The control of a row, whatever its kind: a check or option button, a list, a text box. A kind is added by adding a
/// class in Editors.cpp.
class Editor {
 public:
  /// Makes the control, with its name, its caption if that stands on it, and its items.
  static std::unique_ptr<Editor> Make(const Binding& row, QWidget* parent);
  /// Takes the one that stands in `window` under the row's name.
  static std::unique_ptr<Editor> Take(const Binding& row, const QWidget& window);

  Editor() = default;
  virtual ~Editor() = default;
  Editor(const Editor&) = delete;
  Editor& operator=(const Editor&) = delete;

  virtual QWidget& Control() const = 0;
  /// Runs the handler at each change, by code as well; `wheel` is what the wheel may do to a list.
  virtual void OnChanged(Handler handler, Wheel wheel) = 0;
  /// Shows a value of the row's field.
  virtual void Show(unsigned field) = 0;
  /// What the control gives to its register, in place. A text may give bits beyond its field.
  virtual unsigned Given() const = 0;
  /// The text that the control shows; "1" for a ticked button, else "0".
  virtual QString Text() const = 0;
  /// What the control holds, as a text to compare.
  virtual QString Held() const { return Text(); }
  /// What the chip would show for `field`, if the control shows something else than that.
  virtual std::optional<std::string> ReadsBackAs(unsigned /*field*/) const { return std::nullopt; }
  /// The longest text that the control may show; empty for one of a fixed width.
  virtual QString WidestText() const { return {}; }

 private:
  virtual void Furnish() {}
  static std::unique_ptr<Editor> On(const Binding& row, const QWidget* window, QWidget* parent);
};

}  // namespace zth::windows
