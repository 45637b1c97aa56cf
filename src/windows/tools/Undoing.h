#pragma once

#include <string>
#include <vector>

#include <QString>

#include "tasks/Journal.h"
#include "windows/Desktop.h"

/// Puts back what the session has changed in the chip in use, and, if the user says so, in the board around it.
namespace zth::windows {

/// What has become of it. An empty outcome: nothing was done.
struct Undone {
  QString outcome;
  std::vector<std::string> left;  ///< what was not put back, with the reason
};

tasks::ChipKey KeyInUse();

/// The last action on the chip in use or its board; null if there is none.
const tasks::Action* LastAction();

/// What cannot be put back, known beforehand.
std::vector<std::string> LeftBeforehand();

/// Both ask about heaters and switches first, if there are any to put back. `asker` is the window that asks; null for
/// the program.
Undone UndoLast(const Context& context, QWidget* asker);
Undone PutBackAll(const Context& context, QWidget* asker);

/// Undoes the last action, and says in the main window what has become of it.
void UndoLastAction(const Context& context);

}  // namespace zth::windows
