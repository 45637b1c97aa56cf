#pragma once

#include <memory>

#include "link/ChipId.h"
#include "windows/ChildWindow.h"
#include "windows/limits/LimitFormSubs.h"
#include "windows/limits/LimitTables.h"

class QSpacerItem;
class QTabWidget;

namespace zth::windows {

class AlertList;
class AlertMarks;

/// Limits, interrupt masks and live interrupt status of every monitored channel, in six tabs. Every drag of a slider
/// and every click on a mask is written at once.
class frmLimits final : public ChildWindow {
  Q_OBJECT

 public:
  explicit frmLimits(const Context& context);
  ~frmLimits() override;

  /// Fills all tabs; also called while the window is open, after the pins have been configured.
  void Form_Load() override;
  void Form_Unload() override;

  /// Called by the master timer: updates needles, captions and lamps, including those on hidden tabs.
  void Refresh();

 protected:
  void Reread() override;
  void changeEvent(QEvent* event) override;

 private:
  /// Adds a tab with a gauge on the left and alerts on the right; no gauge if null. `frame` is the name of the frame
  /// that holds them; if null, they are placed directly on the tab.
  void AddTab(QTabWidget& tabs, const char* caption, const char* frame, LimitPanel* gauge, AlertTable* alerts);

  /// Enters a lamp that has turned in the list.
  void NoteTurn(const LimitForm::Page& page, int row, bool alert);
  /// What is known so far is dropped when another chip is in use.
  void LookAtChip();

  LimitForm form_;
  std::unique_ptr<AlertMarks> marks_;
  QSpacerItem* roomForMarks_ = nullptr;
  AlertList* events_;
  link::ChipId polled_;     ///< the chip that the lamps were last read from
  bool turnedRed_ = false;  ///< a lamp has, in the poll under way
};

}  // namespace zth::windows
