// The pictures of docs/guide.md, in the order of its chapters.
#include "Scenes.h"

namespace zth::gallery {
namespace {

void FirstTenMinutes(const Camera& camera) {
  Bench bench(true);
  bench.Main().resize(900, 480);
  bench.Run(1);
  camera.Take(bench.Main(), "pictures/guide-start");
  bench.Press("frmEasySetup", "cmdApply");
  bench.Main().resize(1200, 660);
  bench.Open("frmGraph", {0, 0, 710, 570});
  bench.Run(20);
  LetFan2FollowRemote1(bench);
  bench.Run(40);
  bench.Press("frmAutoGraph", "cmdCancel");
  bench.Open("frmHeaters", {716, 0, 470, 190});
  bench.Slide("frmHeaters", "sldHeater(0)", 100);
  bench.Run(60);
  camera.Take(bench.Main(), "pictures/guide-follow");
}

void PendingChanges(const Camera& camera) {
  Bench bench;
  SetUpEasily(bench);
  bench.Open("frmFanConfig");
  bench.Pick("frmFanConfig", "cmbTachPulses", "2");
  bench.Type("frmFanConfig", "txtMaxPWM", "90");
  camera.Take(bench.Frame("frmFanConfig"), "pictures/guide-pending");
}

void AnAlert(const Camera& camera) {
  Bench bench;
  SetUpEasily(bench);
  bench.Open("frmHeaters");
  bench.Slide("frmHeaters", "sldHeater(0)", 100);
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
  bench.Tick("frmAutoGraph", "chkMinSpeed(1)");
  bench.Open("frmHeaters");
  bench.Slide("frmHeaters", "sldHeater(0)", 60);
  bench.Open("frmAutoGraph");
  bench.Run(60);
  bench.Open("frmHeaters");
  bench.Slide("frmHeaters", "sldHeater(0)", 100);
  bench.Open("frmAutoGraph");
  bench.Run(20);
  camera.Take(bench.Frame("frmAutoGraph"), "pictures/guide-curve");
}

/// The charts held, with a mark and the read-out beside the pointer.
void ReadingACurve(const Camera& camera) {
  Bench bench;
  SetUpEasily(bench);
  LetFan2FollowRemote1(bench);
  bench.Press("frmAutoGraph", "cmdCancel");
  bench.Run(20);
  bench.Open("frmHeaters");
  bench.Slide("frmHeaters", "sldHeater(0)", 100);
  bench.Press("frmHeaters", "cmdClose");
  bench.Run(60);
  bench.Open("frmGraph", {0, 0, 800, 560});
  bench.Key("frmGraph", "stpGraph(3)", Qt::Key_Left);
  bench.Point("frmGraph", "stpGraph(3)", {0.42, 0.25}, true);
  bench.Point("frmGraph", "stpGraph(3)", {0.6, 0.25});
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
