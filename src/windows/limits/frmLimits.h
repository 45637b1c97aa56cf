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

/// Limits, interrupt masks and live interrupt status of every monitored channel, in six tabs. Each drag of a slider and
/// each click on a mask goes to the chip at once.
class frmLimits final : public ChildWindow {
  Q_OBJECT

 public:
  explicit frmLimits(const Context& context);
  ~frmLimits() override;

  /// Fills all tabs anew; also run while the window is open, after the pins have been configured.
  void Form_Load() override;
  void Form_Unload() override;

  /// Job of the master timer: moves needles, captions and lamps, whichever tab shows.
  void Refresh();

 protected:
  void Reread() override;
  void changeEvent(QEvent* event) override;

 private:
  /// A tab with a gauge at the left and alerts at the right; without a gauge for a null one. `frame` names the frame
  /// that holds them, or is null where they stand on the tab itself.
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
