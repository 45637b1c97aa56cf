#pragma once

#include <functional>

#include <QString>

#include "tasks/Exports.h"
#include "windows/Desktop.h"

class QMenu;
class QWidget;

namespace zth::windows {

/// Adds entries that save or copy a configuration in each form to a pop-up menu of `owner`, in two menus of their own.
struct ExportMenu {
  QString name;  ///< of the menus and their entries
  QString save;
  QString copy;
  bool enabled = true;
  std::function<tasks::ExportSubject()> subject;
  std::function<void(const QString& text)> tell;
};
void AddExports(QMenu& menu, QWidget& owner, const Context& context, const ExportMenu& exports);

}  // namespace zth::windows
