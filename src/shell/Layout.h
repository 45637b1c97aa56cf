#pragma once

#include <optional>
#include <vector>

#include <QJsonObject>
#include <QRect>
#include <QString>

#include "platform/Services.h"

class QMdiArea;
class QMdiSubWindow;
class QWidget;

/// The windows on the desk as the settings keep them from one start to the next, when the user wants that: two keys of
/// our own beside the prescribed ones.
namespace zth::shell {

enum class Shown { Normal, Maximised, Minimised };

/// A window of a kept layout.
struct KeptWindow {
  QString name;
  QRect place;  ///< on the desk; only of one that is neither maximised nor minimised
  Shown shown = Shown::Normal;
  QJsonObject charts;  ///< by their names: the ranges that the user has zoomed to
};

struct KeptLayout {
  std::vector<KeptWindow> windows;  ///< in the order of their opening
  QString active;
};

/// Whether the user wants windows to be restored at the start. Not at first.
bool RestoresWindows(const platform::Settings& settings);
void PutRestoresWindows(platform::Settings& settings, bool on);

/// Keeps what stands on the desk.
void StoreLayout(const QMdiArea& desk, platform::Settings& settings);
/// What was kept; nothing when it is damaged. A window that is named twice counts once.
std::optional<KeptLayout> StoredLayout(const platform::Settings& settings);

/// Keeps with each chart of a new window which ranges it begins with: only what differs from them is the user's.
void NoteStartRanges(const QWidget& window);
/// Puts a window's charts to ranges that were kept. What a chart does not take leaves it as it is.
void RestoreCharts(const QWidget& window, const QJsonObject& charts);

}  // namespace zth::shell
