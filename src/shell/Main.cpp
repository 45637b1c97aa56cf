#include "shell/Main.h"

#include "base/Product.h"
#include "chip/ChipModel.h"
#include "chip/ChipState.h"
#include "chip/Measurements.h"
#include "chip/PinModel.h"
#include "chip/PwmModes.h"
#include "chip/RegMapStuff.h"
#include "link/Asker.h"
#include "link/Declarations.h"
#include "link/LinkErrors.h"
#include "link/RegisterHooks.h"
#include "link/Waiting.h"
#include "platform/Guard.h"
#include "shell/FirstContact.h"
#include "shell/frmMain.h"
#include "shell/frmSplash.h"
#include "tasks/Discovery.h"
#include "tasks/Recorder.h"
#include "tasks/TasksState.h"
#include "widgets/ClearBoxes.h"
#include "windows/SharedState.h"
#include "windows/config/frmEasySetup.h"

namespace zth::shell {
namespace {

void FillTables() {
  chip::InitRegisterTable();
  chip::ResetBoardSwitches();
  chip::InitVoltageNames();
  chip::ReadPinConfiguration();
  chip::UpdateBoardSwitches();
}

void EndWith(const QString& message, platform::Services& services) {
  AskAtStart({base::kTitle, message, platform::BoxIcon::Critical, platform::BoxButtons::Ok}, services);
  services.process.End(1);
}

/// The end of the program when requested from outside, at any time: asks nothing and makes no transfer.
void EndInOrder(platform::Process& process) {
  if (MainForm != nullptr) {
    if (MainForm->Unloaded()) return;
    // Before the main window is shown, for example during the search, no window has a placement to store.
    if (MainForm->isVisible()) MainForm->CloseAllWindows();
  }
  process.End(0);
}

void AwaitEndOrders(platform::Process& process) {
  process.OnEndOrders({platform::Guarded([] {
                         if (MainForm != nullptr) MainForm->SaveForEnd();
                       }),
                       platform::Guarded([&process] { EndInOrder(process); })});
}

/// One pass of the start, up to polling.
void Start(platform::Services& services) {
  const link::Asker start(link::Asker::Kind::Job, [] { return "start"; });
  link::Attach(services, [] {
    if (MainForm != nullptr) MainForm->CloseAllWindows();
  });
  // Before the first call, so that the traffic is whole.
  link::Bus.observer = tasks::Work.traffic.get();
  link::Bus.reporter.ask = [&services](const platform::BoxQuestion& question) {
    return AskAtStart(question, services);
  };
  chip::EnterPwmHooks();
  chip::EnterPinHooks();

  if (!tasks::ProbeLinks(services)) EndWith("USB/SMBus Hardware not detected", services);
  tasks::SetDeviceName();
  {
    frmSplash splash;
    splash.show();
    services.events.PumpPaint();
    MainForm = new frmMain(services);
    MainForm->Form_Load(splash);
  }
  MainForm->show();
  {
    const link::UserAction action([] { return QString(); });
    // Over a slow link this takes a while, so paint the main window first.
    services.events.PumpPaint();
    InitMonitorDefaults();
    FillTables();
  }
  link::Bus.reporter.ask = nullptr;
  MainForm->EnableTimer(true);
}

/// Clears everything that a failed start has left behind.
void ForgetStart() {
  delete MainForm;
  link::Bus = {};
  chip::Model = {};
  windows::Shared = {};
  tasks::Work.start = {};
}

}  // namespace

void InitMonitorDefaults() {
  chip::Model.TachClock = 90000;
  windows::Shared.LogPeriodMs = 100;
  chip::Model.PollPeriodMs = 100;
  windows::Shared.GraphPeriodMs = 50;
  chip::Model.PollEnabled = true;
  chip::ReadManualFlags();
  chip::ReadChipRevision();
}

void Main(platform::Services& services) {
  AwaitEndOrders(services.process);
  widgets::ClearBoxes::Install();
  // Once: a start that begins anew goes on in the same recording.
  tasks::StartRecording(services);
  for (bool runs = false; !runs;) {
    try {
      Start(services);
      runs = true;
    } catch (const StartOver& over) {
      ForgetStart();
      if (over.simulated) services.libraries.TakeBoard(kSimulated);
    }
  }
  if (windows::OpensEasySetup(services.settings)) MainForm->OpenWindow("frmEasySetup");
  MainForm->RestoreWindows();
  MainForm->KeepChanges();
}

}  // namespace zth::shell
