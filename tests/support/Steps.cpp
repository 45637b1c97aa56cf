#include "tests/support/Steps.h"

#include <sstream>

#include <QAbstractButton>
#include <QComboBox>
#include <QLineEdit>
#include <QRegularExpression>
#include <QTabWidget>

#include "link/Declarations.h"
#include "widgets/GSlider.h"

namespace zth::testing {
namespace {

int Number(const std::string& text) {
  return std::stoi(text, nullptr, 16);
}

std::vector<std::string> Words(const std::string& text) {
  std::istringstream stream(text);
  return {std::istream_iterator<std::string>(stream), {}};
}

QStringList Expanded(const QString& names) {
  static const QRegularExpression range(R"(^(.*)\((\d+)\.\.(\d+)\)$)");
  QStringList all;
  for (const QString& name : names.split(' ', Qt::SkipEmptyParts)) {
    const auto found = range.match(name);
    if (!found.hasMatch()) all << name;
    for (int i = found.captured(2).toInt(); found.hasMatch() && i <= found.captured(3).toInt(); ++i) {
      all << QString("%1(%2)").arg(found.captured(1)).arg(i);
    }
  }
  return all;
}

QString HeldBy(const QWidget& window, const QString& name) {
  auto& control = Desk::Get<QWidget>(window, name);
  if (const auto* list = qobject_cast<const QComboBox*>(&control)) return QString::number(list->currentIndex());
  if (const auto* tabs = qobject_cast<const QTabWidget*>(&control)) return QString::number(tabs->currentIndex());
  const auto* button = qobject_cast<const QAbstractButton*>(&control);
  if (button != nullptr && button->isCheckable()) return button->isChecked() ? "1" : "0";
  const QVariant value = control.property("Value");
  if (value.typeId() == QMetaType::Bool) return value.toBool() ? "1" : "0";
  return value.isValid() ? QString::number(value.toDouble()) : Desk::Text(window, name).remove('&');
}

void DoOne(const QWidget& window, const QString& name, const QString& value) {
  auto& control = Desk::Get<QWidget>(window, name);
  if (qobject_cast<QComboBox*>(&control) != nullptr) return Desk::Pick(window, name, value.toInt());
  if (qobject_cast<QLineEdit*>(&control) != nullptr) return Desk::Type(window, name, value);
  if (auto* slider = qobject_cast<widgets::GSlider*>(&control)) return slider->StepByUser(value.toDouble());
  if (auto* tabs = qobject_cast<QTabWidget*>(&control)) return tabs->setCurrentIndex(value.toInt());
  value.isNull() ? Desk::Press(window, name) : Desk::Check(window, name, value == "1");
}

}  // namespace

Traffic T(const std::string& text) {
  Traffic traffic;
  for (const std::string& word : Words(text)) {
    const std::string rest = word.substr(1);
    const auto mark = rest.find_first_of("=+");
    if (word[0] == 'R') {
      traffic.push_back(R(Number(rest)));
    } else if (word[0] == 'W') {
      traffic.push_back(W(Number(rest), Number(rest.substr(mark + 1))));
    } else if (word[0] == 'B') {
      traffic = Concat(traffic, B(Number(rest), std::stoi(rest.substr(mark + 1))));
    } else if (link::Bus.InterfaceMode == link::kModeUsb) {
      traffic.push_back(std::string("usb ") + word[0] + (rest.empty() ? "" : " ") + rest);
    }
  }
  return traffic;
}

Traffic Writes(Traffic traffic) {
  std::erase_if(traffic, [](const std::string& transfer) { return transfer.find(" W ") == std::string::npos; });
  return traffic;
}

void Put(FakeBoard::Registers& registers, const std::string& text) {
  for (const std::string& word : Words(text)) {
    const auto range = word.find("..");
    const auto value = word.find('=');
    const int last = Number(word.substr(range == std::string::npos ? 0 : range + 2));
    for (int reg = Number(word); reg <= last; ++reg) {
      registers.at(static_cast<std::size_t>(reg)) = static_cast<std::uint8_t>(Number(word.substr(value + 1)));
    }
  }
}

void Do(const QWidget& window, const QString& steps) {
  for (const QString& step : steps.split("; ")) {
    const auto mark = step.indexOf('=');
    for (const QString& name : Expanded(step.left(mark)))
      DoOne(window, name, mark < 0 ? QString() : step.mid(mark + 1));
  }
}

std::string Held(const QWidget& window, const QString& controls) {
  QStringList held;
  for (const QString& name : Expanded(controls)) held << HeldBy(window, name);
  return held.join('|').toStdString();
}

WindowDesk::WindowDesk(const QString& name, Buses buses, const std::function<void(Desk&)>& arrange)
    : Desk(buses), name_(name) {
  Start();
  if (arrange) arrange(*this);
  board.TakeTraffic();
  window = &Open(name);
  load = board.TakeTraffic();
}

WindowDesk::WindowDesk(const QString& name, const std::string& registers)
    : WindowDesk(name, Buses::Both, [&](Desk& desk) { Put(desk.board.Chip(), registers); }) {}

Traffic WindowDesk::Sent(const QString& steps) {
  board.TakeTraffic();
  Do(steps);
  return board.TakeTraffic();
}

void WindowDesk::Reopen() {
  window->Unload();
  Settle();
  board.TakeTraffic();
  window = &Open(name_);
  load = board.TakeTraffic();
}

}  // namespace zth::testing
