#pragma once

#include <string>
#include <vector>

#include "tasks/Journal.h"
#include "tasks/TrafficText.h"

/// The actions of a journal as text, in the form of recorded traffic: for each action the reads that would have shown
/// the values before it, then its writes.
namespace zth::tasks {

std::string JournalText(const std::vector<Action>& actions, const TrafficHead& head);

/// The actions of such a text, up to a line that cannot be read.
std::vector<Action> ActionsOf(const std::string& text);

}  // namespace zth::tasks
