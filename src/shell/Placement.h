#pragma once

#include <QRect>
#include <QWidget>

#include "platform/Services.h"

namespace zth::shell {

/// The main window's placement in the settings: four keys in twips, each a number as text, and our own key with the
/// normal geometry of a maximised window.

/// Applies the placement. A missing or invalid key counts as its default. A placement off every screen is moved onto
/// the nearest one.
void RestorePlacement(QWidget& window, const platform::Settings& settings);

/// Stores the window's left, top, width and height, and for a maximised window its normal geometry as well.
void StorePlacement(const QWidget& window, platform::Settings& settings);

/// The rectangle, moved and shrunk as needed to lie within one screen, preferably the primary one. Unchanged if a
/// usable part of its title bar is on a screen.
QRect OntoScreens(const QRect& wanted, const QList<QRect>& screens);

}  // namespace zth::shell
