#pragma once

#include <array>

#include "windows/ChildWindow.h"

class QCheckBox;
class QComboBox;
class QGridLayout;
class QLabel;

namespace zth::windows {

class BoundControls;
struct Binding;

/// Direction, polarity and status of the eight general-purpose pins. A live window: every change of a control is
/// written at once, and the master timer refreshes the window while it is open.
class frmGPIO final : public ChildWindow {
  Q_OBJECT

 public:
  explicit frmGPIO(const Context& context);

  void Form_Load() override;
  void Form_Unload() override;

  /// Reads the pins' registers and shows them. Writes nothing.
  void UpdateGPIOStatus();

 private:
  static constexpr std::size_t kPins = 8;

  /// The dependent controls of one pin.
  struct Line {
    QComboBox* cmbDir = nullptr;
    QComboBox* cmbStatus = nullptr;
    QLabel* lblStatus = nullptr;
    QCheckBox* chkPinEn = nullptr;
  };

  void BuildLine(std::size_t i, QGridLayout& grid);
  void Control_Change(const Binding& row);

  std::array<Line, kPins> lines_{};
  BoundControls* controls_ = nullptr;
  bool loaded_ = false;
  bool refreshing_ = false;
};

}  // namespace zth::windows
