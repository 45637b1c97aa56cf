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
/// during the transfers. A recall can be cancelled between two registers; until it ends, nothing else in the main
/// window can be used, and closing the window cancels it.
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
  void cmdRecent_Click();
  void cmdClose_Click();
  void cmdCancel_Click();

  /// The text lines of the chip's registers, read row by row, and their number.
  std::string ReadChip(int& lines);

  /// Writes the registers listed in the text, and reports the outcome.
  void Recall(std::string_view text, const QString& file);
  /// Asks for the file to recall, with that one chosen, and recalls it. `chosen` may be empty.
  void RecallChosen(const QString& chosen);
  void RecallFile(const QString& file);
  QString AskForFile(bool save, const QString& chosen = {});

  /// Shows the progress and the current register. False if nothing has changed, so that no painting is needed.
  bool ShowProgress(int percent, const QString& reg);
  void EndProgress(const QString& outcome, const QString& toolTip = "");
  /// Shows the outcome in the status bar, and keeps it for when the window is reopened.
  static void Remember(const QString& outcome, Desktop& desktop);

  bool stop_ = false;  ///< the user has cancelled the recall or closed the window
  QPushButton* cmdRecall_ = nullptr;
  QPushButton* cmdRecent_ = nullptr;
  QPushButton* cmdClose_ = nullptr;
  QPushButton* cmdCancel_ = nullptr;
  QCheckBox* chkNotDefaults_ = nullptr;
  QLineEdit* txtComment_ = nullptr;
  QProgressBar* prgWork_ = nullptr;
  QLabel* lblState_ = nullptr;
};

}  // namespace zth::windows
