#pragma once

#include <cstdint>
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

  /// Shows the value of a status register that was read from the chip in use, whoever read it.
  void TakeStatus(std::int32_t reg, int value);

 protected:
  void Reread() override;
  void changeEvent(QEvent* event) override;

 private:
  /// Adds a tab with a gauge on the left and alerts on the right; no gauge if null. `frame` is the name of the frame
  /// that holds them; if null, they are placed directly on the tab.
  void AddTab(QTabWidget& tabs, const char* caption, const char* frame, LimitPanel* gauge, AlertTable* alerts);

  /// Adds a lamp's change to the list of events.
  void NoteTurn(const LimitForm::Page& page, int row, bool alert);
  /// Discards what is known so far when another chip is in use.
  void LookAtChip();
  /// Runs `show`, which sets lamps, and then updates the marks and plays the sound.
  template <typename Show>
  void TurnLamps(Show show);

  LimitForm form_;
  std::unique_ptr<AlertMarks> marks_;
  QSpacerItem* roomForMarks_ = nullptr;
  AlertList* events_;
  link::ChipId polled_;     ///< the chip from which the lamps were last read
  bool turnedRed_ = false;  ///< a lamp has turned red in the current poll
};

/// To be called after any read of a register outside that window: a read ends what a status register has held, so the
/// window would never see it. Does nothing for other registers, and while the window is closed, since only the open one
/// keeps a list of events.
void NoteStatusRead(const Desktop& desktop, std::int32_t reg, int value);

}  // namespace zth::windows
