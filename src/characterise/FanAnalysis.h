#pragma once

#include <span>

#include "characterise/FanResult.h"
#include "characterise/Settling.h"

/// What the measured speeds say of a fan. Pure functions.
namespace zth::characterise {

/// Fills everything of `result` that its `speeds` tell; `tachWorks` is false if the tach's pin is no tach input.
void Analyse(TachResult& result, bool tachWorks);

/// Fills the time of spinning up and the time constant from the readings since full duty was set on a standing fan.
void AnalyseSpinUp(TachResult& result, std::span<const Speed> speeds, double began);

}  // namespace zth::characterise
