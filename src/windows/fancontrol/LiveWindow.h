#pragma once

#include <algorithm>
#include <array>
#include <cstdint>
#include <functional>

#include "link/Declarations.h"
#include "link/USBStuff.h"
#include "widgets/UpDown.h"
#include "windows/ChildWindow.h"
#include "windows/Handlers.h"

class QCheckBox;
class QComboBox;
class QGridLayout;
class QGroupBox;
class QLabel;
class QLineEdit;

/// What the windows have in common that write at each change of a control.
namespace zth::windows {

/// A window whose handlers do nothing until its load step has shown what the chip holds.
class LiveWindow : public ChildWindow {
  Q_OBJECT

 public:
  /// `shows` as a ChildWindow has it.
  LiveWindow(const QString& name, const QString& caption, const Context& context, unsigned shows);

 protected:
  /// With the window not ready meanwhile, so that nothing is written back; Form_Load makes it ready again.
  void Reread() override;

  bool Ready() const { return ready_; }
  void SetReady(bool ready) { ready_ = ready; }
  /// The handler, kept from running while the window is not ready.
  Handler WhenReady(Handler handler);

 private:
  bool ready_ = false;
};

/// Places controls on the rows of a grid, labels in the first column. Each gets its objectName, a label named after it
/// ("lblMaxPWM" for "txtMaxPWM"), and its handler.
class ControlRows {
 public:
  explicit ControlRows(QWidget& parent);

  QCheckBox* AddCheck(const QString& name, const QString& caption, Handler handler);
  QComboBox* AddList(const QString& name, const QString& caption, const QStringList& items, Handler handler);
  QLineEdit* AddText(const QString& name, const QString& caption, const QString& upDown,
                     const widgets::UpDown::Range& range, Handler handler);
  /// The same with room beside the box for a ChipHint: "lblChipTmin(0)" for "txtTmin(0)".
  QLineEdit* AddText(const QString& name, const QString& caption, const QString& upDown,
                     const widgets::UpDown::Range& range, Handler handler, QLabel*& beside);

 private:
  QLineEdit* AddText(const QString& name, const QString& caption, const QString& upDown,
                     const widgets::UpDown::Range& range, Handler handler, QLabel** beside);
  void AddLabel(const QString& name, const QString& caption, QWidget& buddy);

  QWidget& parent_;
  QGridLayout& grid_;
  int row_ = 0;
};

/// "txtTmin(2)".
QString ElementName(const char* array, int index);

/// A block of registers, taken out of the link's buffer before anything else can use that.
template <std::size_t kCount>
std::array<std::uint8_t, kCount> ReadBytes(std::int32_t first) {
  link::ReadRegisterBlock(link::DeviceAddress, first, static_cast<std::int16_t>(kCount));
  std::array<std::uint8_t, kCount> bytes{};
  std::copy_n(link::ReadBuffer.begin(), kCount, bytes.begin());
  return bytes;
}

/// Reads a register and writes it with the bits of `keep` left as they are and `set` added. What `set` has beyond a
/// byte, or on the kept bits, goes out with it.
void ModifyRegister(std::int32_t number, std::uint8_t keep, std::int32_t set);

}  // namespace zth::windows
