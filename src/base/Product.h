#pragma once

/// What the program calls itself: the title of its windows and boxes, and the name of its settings.
namespace zth::base {

inline constexpr char kTitle[] = "ZTH4718 Evaluation Software";

inline constexpr int kVersionMajor = 1;
inline constexpr int kVersionMinor = 0;
inline constexpr int kVersionRevision = 7;

/// Major, minor and revision joined by points.
inline constexpr char kVersionText[] = "1.0.7";

inline constexpr char kMakerAddress[] = "https://www.tarnwell.example/";

}  // namespace zth::base
