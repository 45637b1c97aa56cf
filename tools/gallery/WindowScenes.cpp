// The pictures of docs/windows, each of one window at work, and the one of the whole program.
#include <array>

#include <QAction>

#include "Scenes.h"

namespace zth::gallery {
namespace {

/// One window on a board that has just been set up, page by page if it has pages.
struct Page {
  const char* window;
  const char* tabs;
  int page;
  const char* picture;
};

constexpr std::array kConfigPages{
    Page{"frmFanConfig", "SSTab1", 0, "windows/frmFanConfig-0"},
    Page{"frmFanConfig", "SSTab1", 1, "windows/frmFanConfig-1"},
    Page{"frmFanConfig", "SSTab1", 5, "windows/frmFanConfig-5"},
    Page{"frmGenConfig", nullptr, 0, "windows/frmGenConfig"},
    Page{"frmPinConfig", "SSTab1", 1, "windows/frmPinConfig"},
    Page{"frmVoltConfig", nullptr, 0, "windows/frmVoltConfig"},
    Page{"frmTherm", "SSTab1", 0, "windows/frmTherm-0"},
    Page{"frmTherm", "SSTab1", 1, "windows/frmTherm-1"},
    Page{"frmTherm", "SSTab1", 2, "windows/frmTherm-2"},
    Page{"frmEDO", nullptr, 0, "windows/frmEDO"},
    Page{"frmSwitches", nullptr, 0, "windows/frmSwitches"},
};

void TakeWindow(Bench& bench, const Camera& camera, const QString& window) {
  bench.Open(window);
  camera.Take(bench.Frame(window), "windows/" + window);
}

}  // namespace

void SetUpEasily(Bench& bench) {
  bench.Open("frmEasySetup");
  bench.Do("frmEasySetup", "cmdApply");
}

void LetFan2FollowRemote1(Bench& bench) {
  bench.Open("frmAutoGraph");
  bench.Do("frmAutoGraph", "tbPWM=1; txtTmin(1)=30; txtMinPWM(1)=30");
  bench.Pick("frmAutoGraph", "cmbTrange(1)", QString::fromUtf8("20°C"));
}

void SetUpDynamicTmin(Bench& bench) {
  bench.Open("frmDynamicTmin");
  bench.Do("frmDynamicTmin", "txtLowLim(0)=20; txtHighLim(0)=50; txtR1OpPoint=41; txtOpPointHyst=2");
  bench.Pick("frmDynamicTmin", "cmbCycle(0)", "4 Sec");
}

void TakeMain(const Camera& camera) {
  Bench bench;
  bench.Run(60);
  SetUpEasily(bench);
  LetFan2FollowRemote1(bench);
  bench.Do("frmAutoGraph", "cmdCancel");
  bench.Run(40);
  bench.Open("frmHeaters", {896, 440, 470, 190});
  bench.Do("frmHeaters", "sldHeater(0)=100");
  bench.Open("frmLimits", {672, 0, 694, 520});
  bench.Pick("frmLimits", "cmbTemp", "Remote1");
  bench.Open("frmGraph", {0, 0, 790, 630});
  bench.Run(45);
  camera.Take(bench.Main(), "pictures/main");
}

void TakeConfigWindows(const Camera& camera) {
  Bench bench;
  TakeWindow(bench, camera, "frmEasySetup");
  SetUpEasily(bench);
  bench.Run(20);
  for (const Page& page : kConfigPages) {
    bench.Open(page.window);
    if (page.tabs != nullptr) bench.Do(page.window, QString("%1=%2").arg(page.tabs).arg(page.page));
    bench.Run(2);
    camera.Take(bench.Frame(page.window), page.picture);
  }
  bench.Do("frmPinConfig", "SSTab1=0");
  bench.Open("frmPinConfig");
  bench.Do("frmPinConfig", "optEasy(2)");
  camera.Take(bench.Frame("frmPinConfig"), "windows/frmPinConfig-easy");

  // GPIO 1 is an output, GPIO 2 an input; both use tach pins.
  bench.Do("frmPinConfig", "SSTab1=1");
  for (const char* pin : {"1", "2"}) bench.Pick("frmPinConfig", QString("cmbPin") + pin, QString("GPIO") + pin);
  bench.Do("frmPinConfig", "cmdApply");
  bench.Open("frmGPIO");
  bench.Do("frmGPIO", "chkEnGPIO=1");
  bench.Pick("frmGPIO", "cmbDir(0)", "O/P");
  bench.Run(2);
  TakeWindow(bench, camera, "frmGPIO");
}

/// Both show what is done before they are taken.
void TakeTools(Bench& bench, const Camera& camera) {
  bench.Open("frmTraffic");
  bench.Do("frmTraffic", "cmdClear; chkNoMonitor=1; txtMark=Fan 2 gets its curve; cmdMark");
  bench.Open("frmAutoGraph");
  bench.Do("frmAutoGraph", "tbPWM=1; txtTmin(1)=32");
  bench.Pick("frmAutoGraph", "cmbTrange(1)", QString::fromUtf8("16\u00B0C"));
  LetFan2FollowRemote1(bench);
  bench.Open("frmTraffic", {0, 0, 1340, 420});
  bench.Run(1);
  TakeWindow(bench, camera, "frmTraffic");

  bench.Open("frmChanges");
  Bench::Settle();
  TakeWindow(bench, camera, "frmChanges");

  bench.Open("frmCompare", {0, 0, 860, 560});
  bench.Do("frmCompare", "cmdRead; chkDifferences=1");
  Bench::Settle();
  TakeWindow(bench, camera, "frmCompare");
}

void TakeWindows(const Camera& camera) {
  Bench bench;
  SetUpEasily(bench);
  bench.Run(30);
  LetFan2FollowRemote1(bench);
  bench.Run(40);
  bench.Open("frmHeaters");
  bench.Do("frmHeaters", "sldHeater(0)=60");
  bench.Run(45);
  for (const char* window : {"frmAutoGraph", "frmHeaters", "frmGraph"}) TakeWindow(bench, camera, window);

  bench.Open("frmLimits");
  bench.Pick("frmLimits", "cmbTemp", "Remote1");
  bench.Drag("frmLimits", "ggeTemp", 3, 60);
  bench.Run(1);
  TakeWindow(bench, camera, "frmLimits");

  bench.Open("frmLogging");
  bench.Do("frmLogging", "chkLog(0..1) chkLog(5) chkLog(13)=1");
  bench.AnswerFile("fan2.csv");
  bench.Do("frmLogging", "cmdLogData");
  bench.Run(1);
  TakeWindow(bench, camera, "frmLogging");

  bench.Open("frmSave");
  bench.AnswerFile("fan2.sav");
  bench.Do("frmSave", "cmdsave");
  bench.Open("frmSave");
  bench.Do("frmSave", "txtComment=Fan 2 follows Remote1");
  bench.AnswerFile("fan2.sav");
  bench.Do("frmSave", "cmdRecall");
  TakeWindow(bench, camera, "frmSave");

  bench.Open("frmRegMap");
  bench.PickNode("frmRegMap", "TreeView1", "PWM2 Config");
  TakeWindow(bench, camera, "frmRegMap");
  bench.Do("frmRegMap", "tabPages=1; cmdReadShown");
  bench.Do("frmHeaters", "sldHeater(0)=80");
  bench.Run(5);
  bench.Do("frmRegMap", "txtSearch=PWM; cmdReadShown");
  camera.Take(bench.Frame("frmRegMap"), "windows/frmRegMap-all");

  TakeTools(bench, camera);

  bench.Open("frmAutoGraph");
  bench.Main().findChild<QAction*>("mnuGuide")->trigger();
  Bench::Settle();
  TakeWindow(bench, camera, "frmGuide");

  bench.Pick("frmAutoGraph", "cmbControl(0)", "Manual Mode");
  bench.Open("frmManualControl");
  bench.Do("frmManualControl", "sldManual(0)=40");
  bench.Run(3);
  TakeWindow(bench, camera, "frmManualControl");
}

void TakeDynamicTmin(const Camera& camera) {
  Bench bench;
  SetUpEasily(bench);
  LetFan2FollowRemote1(bench);
  SetUpDynamicTmin(bench);
  bench.Open("frmHeaters");
  bench.Do("frmHeaters", "sldHeater(0)=60");
  bench.Run(90);
  // A new window starts with empty charts.
  bench.Do("frmDynamicTmin", "cmdCancel");
  bench.Open("frmDynamicTmin");
  bench.Run(15);
  bench.Do("frmDynamicTmin", "chkEnDynR1=1");
  bench.Run(40);
  bench.Do("frmHeaters", "sldHeater(0)=40");
  bench.Run(40);
  TakeWindow(bench, camera, "frmDynamicTmin");
}

}  // namespace zth::gallery
