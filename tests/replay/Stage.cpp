#include "tests/replay/Stage.h"

#include <algorithm>
#include <fstream>
#include <sstream>

#include <QPushButton>
#include <QTemporaryDir>
#include <QTreeWidget>

#include "link/Declarations.h"
#include "tests/support/Seen.h"
#include "tests/support/SimulatedDesk.h"

namespace zth::testing {
namespace {

/// The program on a recording, in the same virtual time as the simulated board.
class ReplayDesk : private BoardEntries {
 public:
  explicit ReplayDesk(const std::string& recording)
      : usb([&recording] { return Source(recording); }, 1, "it"),
        smbus([&recording] { return Source(recording); }, 2, "it") {
    for (const char* library : {"USBFunctions", "smbus"}) boardNames[library] = simulator::kBoardName;
    (void)desk.clock.Now();  // as the simulated desk does, so that both begin at the same moment
    desk.libraries.load = [this](const QString& name) {
      const bool isThere = (name == "smbus" ? smbus : usb).HasCalls();
      return isThere ? platform::LoadedLibrary{LibraryOf(*this, name), {}}
                     : platform::LoadedLibrary{nullptr, "File not found"};
    };
  }

  Desk desk;
  replay::Replay usb;
  replay::Replay smbus;

 private:
  static tasks::TrafficReader::Source Source(const std::string& text) {
    return [in = std::make_shared<std::istringstream>(text)] {
      std::string piece(4096, '\0');
      in->read(piece.data(), 4096);
      piece.resize(static_cast<std::size_t>(in->gcount()));
      return piece;
    };
  }

  std::int16_t LoadFirmWare(const char* /*path*/) override { return usbLink_.LoadFirmware(); }
  std::int16_t VendorIORequest(std::int16_t request, std::int32_t value, std::int32_t index, std::int16_t direction,
                               std::int16_t length, std::uint8_t* buffer) override {
    return usbLink_.Request(request, value, index, direction, length, buffer);
  }
  void DetectSmbus() override { smbusLink_.Detect(); }
  std::uint8_t ReadSmbus(std::uint8_t address, std::uint8_t reg) override { return smbusLink_.Read(address, reg); }
  void WriteSmbus(std::uint8_t address, std::uint8_t reg, std::uint8_t value) override {
    smbusLink_.Write(address, reg, value);
  }
  std::int32_t SmbusFailures(std::uint8_t address) override { return smbus.Failures(address); }

  replay::UsbLink usbLink_{[this](const auto& request) { return usb.Answer(request); }};
  replay::SmbusLink smbusLink_{[this](const auto& request) { return smbus.Answer(request); }};
};

std::string Content(const QString& path) {
  std::ifstream file(path.toStdString(), std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

/// Runs the program and the scene, answering each question so that it goes on.
Played Play(const Scene& scene, Desk& desk) {
  // Charts look at the clock as often as they are painted, which depends on the machine.
  desk.clock.lookUs = 0;
  const QTemporaryDir folder;
  const QString file = folder.filePath("recording.txt");
  desk.process.variables["ZTH4718_RECORD"] = file;
  desk.prompts.whileShown = [&prompts = desk.prompts] {
    prompts.script.push_back(platform::BoxAnswer::Ok);
    prompts.picks.clear();
    if (!prompts.choicesShown.empty()) prompts.picks.push_back(prompts.choicesShown.back().choices.value(0));
  };
  Played played;
  try {
    if (!desk.RunMain()) scene.act(desk, played.shown);
  } catch (const platform::ProcessEnded&) {
    played.shown.emplace_back("the program has ended");
  }
  desk.prompts.script.clear();
  desk.prompts.picks.clear();
  desk.fileDialogs.script.clear();
  for (const auto& box : desk.prompts.shown) played.shown.push_back("box: " + box.text.toStdString());
  for (const int status : desk.process.ends) played.shown.push_back("end: " + std::to_string(status));
  played.recording = Content(file);
  return played;
}

/// The value of a control, however it is named.
std::string Value(const QWidget& widget) {
  std::string value;
  const bool isButton = qobject_cast<const QAbstractButton*>(&widget) != nullptr;
  for (const char* name : {"text", "currentText", "checked", "value", "Value", "PointerValue"}) {
    const QVariant property = widget.property(name);
    if (property.isValid() && !(isButton && property.typeId() == QMetaType::QString))
      value += (value.empty() ? "" : ", ") + property.toString().toStdString();
  }
  if (const auto* tree = qobject_cast<const QTreeWidget*>(&widget)) {
    for (QTreeWidgetItemIterator at(const_cast<QTreeWidget*>(tree)); *at != nullptr; ++at) {
      for (int column = 0; column < tree->columnCount(); ++column) value += (*at)->text(column).toStdString() + "|";
    }
  }
  if (const auto* chart = qobject_cast<const widgets::Strip*>(&widget)) {
    for (int trace = 0; trace < 12; ++trace) {
      const Points points = PointsOf(*chart, trace);
      if (!points.empty()) value += " " + std::to_string(points.back().second);
    }
  }
  std::ranges::replace(value, '\n', ' ');
  return value;
}

}  // namespace

void Look(QWidget& window, Lines& shown) {
  for (const QWidget* widget : Shown(window)) {
    const QString name = widget->objectName();
    // Captions are no values: tests/words looks at them.
    const bool isCaption =
        name.startsWith("Label") || name.startsWith("Frame") || qobject_cast<const QPushButton*>(widget) != nullptr;
    if (name.isEmpty() || name.startsWith("qt_") || isCaption) continue;
    const std::string value = Value(*widget);
    if (!value.empty()) shown.push_back((window.objectName() + " " + name + ": ").toStdString() + value);
  }
}

Played PlaySimulated(const Scene& scene) {
  SimulatedDesk stage(scene.settings);
  stage.desk.libraries.load = [load = stage.desk.libraries.load, &scene](const QString& name) {
    const bool isThere = std::ranges::count(scene.absent, name.toStdString()) == 0;
    return isThere ? load(name) : platform::LoadedLibrary{nullptr, "File not found"};
  };
  return Play(scene, stage.desk);
}

Played PlayRecorded(const Scene& scene, const std::string& recording) {
  ReplayDesk stage(recording);
  Played played = Play(scene, stage.desk);
  played.parted = stage.usb.HasCalls() ? stage.usb.Trouble() : "";
  if (stage.smbus.HasCalls()) played.parted += stage.smbus.Trouble();
  return played;
}

Lines CallsOf(const std::string& recording) {
  Lines calls;
  std::istringstream in(recording);
  for (std::string line; std::getline(in, line);) {
    // The head has the time of the recording, and the board's name.
    calls.push_back(line.starts_with("# ") ? line.substr(0, line.find(' ', 2)) : line.substr(line.find(' ') + 1));
  }
  return calls;
}

std::string FirstDifference(const std::string& before, const std::string& now) {
  const Lines recorded = CallsOf(before);
  const Lines again = CallsOf(now);
  const auto [one, other] = std::ranges::mismatch(recorded, again);
  if (one == recorded.end() && other == again.end()) return {};
  const auto told = [](auto at, auto end) { return at == end ? std::string("nothing") : *at; };
  return "line " + std::to_string(one - recorded.begin() + 1) + ": recorded " + told(one, recorded.end()) + ", now " +
         told(other, again.end());
}

}  // namespace zth::testing
