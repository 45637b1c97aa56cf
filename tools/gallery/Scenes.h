#pragma once

#include "Bench.h"
#include "Camera.h"

/// The scenes for the pictures in docs/. Each sets up a board and the program's windows as the text beside the picture
/// describes, and takes it. Names are file names below docs/, without ".png".
namespace zth::gallery {

/// Easy Setup as it opens, answered with OK: tachs on, fans up to 100 %, graphs open.
void SetUpEasily(Bench& bench);

/// Fan 2 follows Remote1 from 30 % at 30 degrees C, up to 94 % at 50.
void LetFan2FollowRemote1(Bench& bench);

/// Dynamic Tmin of Remote1, set up but not enabled: 41 degrees C, Tmin between 20 and 50, a step every 4 seconds.
void SetUpDynamicTmin(Bench& bench);

void TakeMain(const Camera& camera);
void TakeWindows(const Camera& camera);
void TakeConfigWindows(const Camera& camera);
void TakeDynamicTmin(const Camera& camera);
void TakeGuide(const Camera& camera);

}  // namespace zth::gallery
