#pragma once

#include <functional>

#include <QComboBox>
#include <QMetaObject>

#include "chip/ChipState.h"
#include "chip/Measurements.h"
#include "chip/PinModel.h"
#include "tests/support/Steps.h"

namespace zth::testing {

/// The limits window on a board whose pins a test sets, with the measurement cycle stopped.
class Limits : public ::testing::Test {
 protected:
  explicit Limits(Desk::Buses buses = Desk::Buses::Usb) : desk(buses) {
    desk.Start();
    chip::Model.PollEnabled = false;
  }

  /// Opens the window, or loads it again as after a new pin configuration.
  void Load(const std::function<void(chip::PinFunctionFlags&)>& change = {}) {
    if (change) change(chip::Model.PinFunctions);
    if (window != nullptr) return window->Form_Load();
    window = &desk.Open("frmLimits");
  }
  QStringList Items(const char* list) const {
    const auto& box = Desk::Get<QComboBox>(*window, list);
    QStringList items;
    for (int i = 0; i < box.count(); ++i) items << box.itemText(i);
    return items;
  }
  void PickItem(const char* list, const QString& item) const {
    Desk::Pick(*window, list, static_cast<int>(Items(list).indexOf(item)));
  }
  double Slider(const char* gauge, int number) const { return Indexed(gauge, "Pointer", number); }
  double Needle(const char* gauge, int number) const { return Indexed(gauge, "Needle", number); }
  QString Caption(const char* gauge) const { return Desk::Property(*window, gauge, "Caption").toString(); }
  /// The five gauges' captions in the order of the tabs, separated by "|".
  std::string Captions() const {
    QStringList all;
    for (const char* gauge : {"ggeTemp", "ggeFan", "ggeVolt", "ggeThermTimer", "ggeTHERMPin"}) all << Caption(gauge);
    return all.join('|').toStdString();
  }
  /// Moves a slider to where a drag would leave it, and ends the drag.
  void Drag(const char* gauge, int number, double value) const {
    auto& widget = Desk::Get<QWidget>(*window, gauge);
    widget.setProperty("PointerIndex", number);
    widget.setProperty("PointerValue", value);
    QMetaObject::invokeMethod(&widget, "SliderChanged");
  }
  bool Enabled(const QString& name) const { return Desk::Get<QWidget>(*window, name).isEnabled(); }
  Desk desk;
  windows::ChildWindow* window = nullptr;

 private:
  double Indexed(const char* gauge, const std::string& kind, int number) const {
    auto& widget = Desk::Get<QWidget>(*window, gauge);
    widget.setProperty((kind + "Index").c_str(), number);
    return widget.property((kind + "Value").c_str()).toDouble();
  }
};

inline QString At(const char* array, int index) {
  return QString("%1(%2)").arg(array).arg(index);
}

}  // namespace zth::testing
