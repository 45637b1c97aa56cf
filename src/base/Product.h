#pragma once

/// The program's names: the title of its windows and boxes, and the name of its settings.
namespace zth::base {

inline constexpr char kTitle[] = "ZTH4718 Evaluation Software";

/// Major, minor and revision, separated by points.
inline constexpr char kVersionText[] = "1.0.7";

inline constexpr char kMakerAddress[] = "https://www.tarnwell.example/";

}  // namespace zth::base
