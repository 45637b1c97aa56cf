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

/// Saves the open windows in the settings and restores them at the next start, when the user wants that. Uses two keys
/// of our own next to the prescribed ones.
namespace zth::shell {

enum class Shown { Normal, Maximised, Minimised };

/// A window of a saved layout.
struct KeptWindow {
  QString name;
  QRect place;  ///< on the desk; only for a window that is neither maximised nor minimised
  Shown shown = Shown::Normal;
  QJsonObject charts;  ///< by chart name: the ranges that the user has zoomed to
};

struct KeptLayout {
  std::vector<KeptWindow> windows;  ///< in the order in which they were opened
  QString active;
};

/// Whether the user wants windows to be restored at the start. Off by default.
bool RestoresWindows(const platform::Settings& settings);
void PutRestoresWindows(platform::Settings& settings, bool on);

/// Saves the windows that are open on the desk.
void StoreLayout(const QMdiArea& desk, platform::Settings& settings);
/// The saved layout; nothing when it is damaged. A window that is listed twice counts once.
std::optional<KeptLayout> StoredLayout(const platform::Settings& settings);

/// Notes the start ranges of each chart in a new window: only ranges that differ from them are the user's.
void NoteStartRanges(const QWidget& window);
/// Sets a window's charts to saved ranges. A chart ignores ranges that it cannot take.
void RestoreCharts(const QWidget& window, const QJsonObject& charts);

}  // namespace zth::shell
