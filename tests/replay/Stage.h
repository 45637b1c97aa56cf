#pragma once

#include <functional>
#include <string>
#include <vector>

#include "replay/Links.h"
#include "replay/Replay.h"
#include "tests/support/Desk.h"

/// Plays a scene through the whole program, on the simulated board or on a recording, and keeps what a user would see.
namespace zth::testing {

using Lines = std::vector<std::string>;

/// What a scene has left behind.
struct Played {
  std::string recording;  ///< the file that was recorded
  Lines shown;            ///< the boxes, and what the windows showed whenever the scene looked
  std::string parted;     ///< where program and recording have parted; empty if they have not
};

/// A play and the board that it begins with.
struct Scene {
  std::string name;
  std::string settings;               ///< of the simulated board
  std::vector<std::string> absent{};  ///< libraries that are not there
  std::function<void(Desk& desk, Lines& shown)> act;
};

Played PlaySimulated(const Scene& scene);
Played PlayRecorded(const Scene& scene, const std::string& recording);

/// What each visible control of a window holds.
void Look(QWidget& window, Lines& shown);

/// The calls of a recording without their times.
Lines CallsOf(const std::string& recording);

/// The first line at which two recordings differ, times apart: "line 12: recorded ..., now ..."; empty if none.
std::string FirstDifference(const std::string& before, const std::string& now);

}  // namespace zth::testing
