// The pictures of docs/guide.md, in the order of its chapters.
#include "Scenes.h"

namespace zth::gallery {
namespace {

void FirstTenMinutes(const Camera& camera) {
  Bench bench(true);
  bench.Main().resize(900, 480);
  bench.Run(1);
  camera.Take(bench.Main(), "pictures/guide-start");
  bench.Do("frmEasySetup", "cmdApply");
  bench.Main().resize(1200, 660);
  bench.Open("frmGraph", {0, 0, 710, 570});
  bench.Run(20);
  LetFan2FollowRemote1(bench);
  bench.Run(40);
  bench.Do("frmAutoGraph", "cmdCancel");
  bench.Open("frmHeaters", {716, 0, 470, 190});
  bench.Do("frmHeaters", "sldHeater(0)=100");
  bench.Run(60);
  camera.Take(bench.Main(), "pictures/guide-follow");
}

void PendingChanges(const Camera& camera) {
  Bench bench;
  SetUpEasily(bench);
  bench.Open("frmFanConfig");
  bench.Pick("frmFanConfig", "cmbTachPulses", "2");
  bench.Do("frmFanConfig", "txtMaxPWM=90");
  camera.Take(bench.Frame("frmFanConfig"), "pictures/guide-pending");
}

void AnAlert(const Camera& camera) {
  Bench bench;
  SetUpEasily(bench);
  bench.Open("frmHeaters");
  bench.Do("frmHeaters", "sldHeater(0)=100");
  bench.Run(90);
  bench.Open("frmLimits");
  bench.Pick("frmLimits", "cmbTemp", "Remote1");
  bench.Drag("frmLimits", "ggeTemp", 3, 40);
  bench.Run(1);
  camera.Take(bench.Frame("frmLimits"), "pictures/guide-alert");
}

void TheCurve(const Camera& camera) {
  Bench bench;
  SetUpEasily(bench);
  bench.Run(20);
  LetFan2FollowRemote1(bench);
  bench.Do("frmAutoGraph", "chkMinSpeed(1)=1");
  bench.Open("frmHeaters");
  bench.Do("frmHeaters", "sldHeater(0)=60");
  bench.Open("frmAutoGraph");
  bench.Run(60);
  bench.Open("frmHeaters");
  bench.Do("frmHeaters", "sldHeater(0)=100");
  bench.Open("frmAutoGraph");
  bench.Run(20);
  camera.Take(bench.Frame("frmAutoGraph"), "pictures/guide-curve");
}

/// Held charts, with a mark and the read-out beside the pointer.
void ReadingACurve(const Camera& camera) {
  Bench bench;
  SetUpEasily(bench);
  LetFan2FollowRemote1(bench);
  bench.Do("frmAutoGraph", "cmdCancel");
  bench.Run(20);
  bench.Open("frmHeaters");
  bench.Do("frmHeaters", "sldHeater(0)=100; cmdClose");
  bench.Run(60);
  bench.Open("frmGraph", {0, 0, 800, 560});
  // Hold the chart, set a mark, move the pointer elsewhere.
  bench.Play("frmGraph", "stpGraph(3)", "Left press@0.42 drop@0.42 drag@0.6");
  camera.Take(bench.Frame("frmGraph"), "pictures/guide-reading");
}

}  // namespace

void TakeGuide(const Camera& camera) {
  FirstTenMinutes(camera);
  PendingChanges(camera);
  AnAlert(camera);
  TheCurve(camera);
  ReadingACurve(camera);
}

}  // namespace zth::gallery
