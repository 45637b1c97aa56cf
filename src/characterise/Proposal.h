#pragma once

#include "characterise/Characterisation.h"

/// The chip's control that keeps a temperature, from what the heat's run has measured. Pure functions.
namespace zth::characterise {

/// Fits the good steps over the duty.
void FitDuties(HeatResult& heat);

/// Temperature at rest with the heater at `drive` and the fans at `duty`, both in percent.
double RestTemperature(const HeatResult& heat, double duty, double drive);

/// Fills the proposal of the run's heat.
void Propose(Characterisation& data, const Settings& settings);

}  // namespace zth::characterise
