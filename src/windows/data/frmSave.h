#pragma once

#include <functional>
#include <string>

#include "windows/ChildWindow.h"

class QCheckBox;
class QGroupBox;
class QLabel;
class QLineEdit;
class QProgressBar;

namespace zth::windows {

/// Saves the chip's writable registers as a text file, and writes such a file back to the chip. The master timer is off
/// while the link works for it.
class frmSave final : public ChildWindow {
  Q_OBJECT

 public:
  explicit frmSave(const Context& context);

  void Form_Load() override;

 private:
  QGroupBox* MakeFrame();

  void cmdsave_Click();
  void cmdRecall_Click();
  void cmdClose_Click();

  /// The file's text, read from the chip row by row.
  std::string ReadChip();
  QString AskForFile(bool save);

  /// Shows how far the work is and with which register, and lets the window paint when that has moved.
  void ShowProgress(int percent, const QString& reg);
  void EndProgress(const QString& outcome);

  QCheckBox* chkNotDefaults_ = nullptr;
  QLineEdit* txtComment_ = nullptr;
  QProgressBar* prgWork_ = nullptr;
  QLabel* lblState_ = nullptr;
};

}  // namespace zth::windows
