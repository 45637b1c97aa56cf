#pragma once

#include "Bench.h"
#include "Camera.h"

/// The scenes behind the pictures of docs/: each sets a board and the program's windows up as the text beside the
/// picture tells, and takes it. Names are those of the files, below docs/ and without ".png".
namespace zth::gallery {

/// Easy Setup as it comes up, answered with OK: tachs on, fans free up to 100 %, graphs open.
void SetUpEasily(Bench& bench);

/// Fan 2 follows Remote1 from 30 % at 30 degrees C, up to 94 % at 50.
void LetFan2FollowRemote1(Bench& bench);

/// Dynamic Tmin of Remote1, all but its switch: 41 degrees C, Tmin between 20 and 50, a step each 4 seconds.
void SetUpDynamicTmin(Bench& bench);

void TakeMain(const Camera& camera);
void TakeWindows(const Camera& camera);
void TakeConfigWindows(const Camera& camera);
void TakeDynamicTmin(const Camera& camera);
void TakeGuide(const Camera& camera);

}  // namespace zth::gallery
