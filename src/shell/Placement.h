#pragma once

#include <QRect>
#include <QWidget>

#include "platform/Services.h"

namespace zth::shell {

/// The main window's placement as the settings keep it: four keys, in twips, each a number as text, and a key of our
/// own with what a maximised window goes back to.

/// Applies it. A key that is missing or no number counts as its default. A placement that lies off every screen is
/// brought back onto the nearest one.
void RestorePlacement(QWidget& window, const platform::Settings& settings);

/// Stores the window's left, top, width and height as they are, and of a maximised one its normal geometry as well.
void StorePlacement(const QWidget& window, platform::Settings& settings);

/// The rectangle, moved and cut down as needed, so that it lies within one of the screens; the primary one comes first.
/// One that shows a usable piece of its title on a screen stays as it is.
QRect OntoScreens(const QRect& wanted, const QList<QRect>& screens);

}  // namespace zth::shell
