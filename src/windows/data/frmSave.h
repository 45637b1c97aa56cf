#pragma once

#include <string>
#include <string_view>

#include "windows/ChildWindow.h"

class QCheckBox;
class QGroupBox;
class QLabel;
class QLineEdit;
class QProgressBar;

namespace zth::windows {

/// Saves the chip's writable registers as a text file, and writes such a file back to the chip. The master timer is off
/// while the link works for it. A recall can be cancelled between two registers; until it is over nothing else of the
/// main window can be used, and closing the window cancels it.
class frmSave final : public ChildWindow {
  Q_OBJECT

 public:
  explicit frmSave(const Context& context);

  void Form_Load() override;
  void Form_Unload() override;

 private:
  class CancelPossible;

  QGroupBox* MakeFrame();

  void cmdsave_Click();
  void cmdRecall_Click();
  void cmdClose_Click();
  void cmdCancel_Click();

  /// The lines of the chip's registers, read row by row, and how many they are.
  std::string ReadChip(int& lines);

  /// Writes the registers that the text names, and tells what it has come to.
  void Recall(std::string_view text, const QString& file);
  QString AskForFile(bool save);

  /// Shows how far the work is and with which register. False when that has not moved, which is not worth painting.
  bool ShowProgress(int percent, const QString& reg);
  void EndProgress(const QString& outcome, const QString& toolTip = "");
  /// Says in the status bar what the work has come to, and keeps it for when the window is opened again.
  static void Remember(const QString& outcome, Desktop& desktop);

  bool stop_ = false;  ///< the user has cancelled the recall, or the window has closed beneath the work
  QPushButton* cmdRecall_ = nullptr;
  QPushButton* cmdClose_ = nullptr;
  QPushButton* cmdCancel_ = nullptr;
  QCheckBox* chkNotDefaults_ = nullptr;
  QLineEdit* txtComment_ = nullptr;
  QProgressBar* prgWork_ = nullptr;
  QLabel* lblState_ = nullptr;
};

}  // namespace zth::windows
