#pragma once

#include <array>
#include <string>

#include "chip/Measurements.h"
#include "windows/ChildWindow.h"

class QCheckBox;
class QGroupBox;
class QHBoxLayout;
class QLabel;
class QLineEdit;
class QPushButton;

namespace zth::windows {

/// Starts and stops the log. The choice of channels and the period are read only at a start.
class frmLogging final : public ChildWindow {
  Q_OBJECT

 public:
  explicit frmLogging(const Context& context);

  void Form_Load() override;

  /// The last line of the head, without its end: the captions of the selected channels.
  std::string BuildLogHeader() const;

  /// Shows the state of the log. Called by the log job, so that the window is always current.
  void ShowState();

 protected:
  /// Keeps what has been ticked and typed, except for channels that the chip in use does not have.
  void Reread() override;

 private:
  QGroupBox* MakeFrame(const char* name, const char* caption);
  void AddColumn(QGroupBox& frame, int first, int count, int column, int row = 0);
  QHBoxLayout* MakeCommandRow();
  QPushButton* MakeButton(const char* name, const char* caption, void (frmLogging::*handler)());

  void cmdSelectAll_Click();
  void cmdDeselectAll_Click();
  void cmdLogData_Click();
  void cmdClose_Click();
  void Start();
  void ShowPace();

  std::array<QCheckBox*, chip::kLogChannels> chkLog_{};
  QLineEdit* txtLogInt_ = nullptr;
  QPushButton* cmdLogData_ = nullptr;
  QLabel* lblPace_ = nullptr;
  QLabel* lblState_ = nullptr;
  QLabel* lblTrouble_ = nullptr;
  QString refused_;  ///< the file that a log could not be started in, until a start succeeds
};

}  // namespace zth::windows
