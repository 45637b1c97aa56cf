#pragma once

#include <string>

#include "characterise/Characterisation.h"

/// Names of what a report tells, the same in all its forms.
namespace zth::characterise {

const char* PhaseName(Phase phase);
const char* StateName(TachState state);
const char* EndingName(Ending ending);
const char* FateName(Fate fate);

/// "20°C"; "-" for a value that the field does not have.
std::string TrangeText(int trange);

}  // namespace zth::characterise
