#pragma once

#include "windows/ChildWindow.h"
#include "windows/limits/LimitFormSubs.h"
#include "windows/limits/LimitTables.h"

class QTabWidget;

namespace zth::windows {

/// Limits, interrupt masks and live interrupt status of every monitored channel, in six tabs. Each drag of a slider and
/// each click on a mask goes to the chip at once.
class frmLimits final : public ChildWindow {
  Q_OBJECT

 public:
  explicit frmLimits(const Context& context);

  /// Fills all tabs anew; also run while the window is open, after the pins have been configured.
  void Form_Load() override;
  void Form_Unload() override;

  /// Job of the master timer: moves needles, captions and lamps, whichever tab shows.
  void Refresh();

 protected:
  void Reread() override;

 private:
  /// A tab with a gauge at the left and alerts at the right; without a gauge for a null one. `frame` names the frame
  /// that holds them, or is null where they stand on the tab itself.
  void AddTab(QTabWidget& tabs, const char* caption, const char* frame, LimitPanel* gauge, AlertTable* alerts);

  LimitForm form_;
};

}  // namespace zth::windows
