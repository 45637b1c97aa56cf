#pragma once

#include <QWidget>

namespace zth::widgets {

/// Shows a text pale, as that of an old value, or normally again. Setting a role that is set already would redraw the
/// text: a caller with a timer may call this each time.
inline void MakePale(QWidget& text, bool pale) {
  if ((text.foregroundRole() == QPalette::PlaceholderText) == pale) return;
  text.setForegroundRole(pale ? QPalette::PlaceholderText : QPalette::NoRole);
}

}  // namespace zth::widgets
