#include "tests/campaign/Operate.h"

#include <set>

#include <QAbstractButton>
#include <QComboBox>
#include <QLineEdit>
#include <QTabWidget>
#include <QTest>
#include <QTreeWidget>

namespace zth::testing {
namespace {

void Call(QWidget& control, const char* operation) {
  QMetaObject::invokeMethod(&control, operation, Qt::DirectConnection);
}

class Collector {
 public:
  explicit Collector(QWidget& control) : control_(control) {}

  void Add(const std::string& what, std::function<void()> act) {
    const QString name = control_.objectName();
    ways.push_back({(name.isEmpty() ? control_.metaObject()->className() : name.toStdString()) + ": " + what, act});
  }
  void AddKey(Qt::Key key) {
    Add("key " + QKeySequence(key).toString().toStdString(), [this_ = &control_, key] { QTest::keyClick(this_, key); });
  }

  std::vector<Way> ways;

 private:
  QWidget& control_;
};

void CollectList(QComboBox& list, Collector& to) {
  std::set<int> items{0, list.count() / 2, list.count() - 1};
  if (list.count() == 0) items.clear();
  for (const int i : items) {
    to.Add("pick " + list.itemText(i).toStdString(), [&list, i] {
      list.setCurrentIndex(i);
      emit list.activated(i);
    });
  }
}

void CollectGauge(QWidget& gauge, Collector& to) {
  for (const QVariant& number : gauge.property("SliderNumbers").toList()) {
    for (const double share : {0.0, 0.4, 1.0}) {
      const double min = gauge.property("ScaleMin").toDouble();
      const double value = min + share * (gauge.property("ScaleMax").toDouble() - min);
      to.Add("slider " + number.toString().toStdString() + " to " + std::to_string(value), [&gauge, number, value] {
        gauge.setProperty("PointerIndex", number);
        gauge.setProperty("PointerValue", value);
        Call(gauge, "SliderChanged");
      });
    }
  }
}

void CollectSlider(QWidget& slider, Collector& to) {
  for (const double value : {0.0, 37.0, 100.0}) {
    to.Add("slide to " + std::to_string(value), [&slider, value] {
      Call(slider, "MouseDown");
      slider.setProperty("Value", value);
      Call(slider, "Change");
      Call(slider, "MouseUp");
    });
  }
}

void CollectTree(QTreeWidget& tree, Collector& to) {
  QList<QTreeWidgetItem*> leaves;
  for (QTreeWidgetItemIterator at(&tree, QTreeWidgetItemIterator::NoChildren); *at != nullptr; ++at) leaves << *at;
  if (leaves.isEmpty()) return;
  for (QTreeWidgetItem* leaf : {leaves.first(), leaves.at(leaves.size() / 2), leaves.last()}) {
    to.Add("click " + leaf->text(0).toStdString(), [&tree, leaf] { tree.setCurrentItem(leaf); });
  }
}

bool IsPart(const QWidget& control) {
  // What a control of Qt's is made of is operated through the control.
  return qobject_cast<const QComboBox*>(control.parentWidget()) != nullptr ||
         qobject_cast<const QLineEdit*>(control.parentWidget()) != nullptr || control.objectName().startsWith("qt_") ||
         control.inherits("QTabBar");
}

}  // namespace

std::vector<QWidget*> OperableControls(const QWidget& window) {
  std::vector<QWidget*> controls;
  for (QWidget* control : window.findChildren<QWidget*>()) {
    if (control->isVisibleTo(&window) && control->isEnabled() && !IsPart(*control)) controls.push_back(control);
  }
  return controls;
}

std::vector<Way> WaysToOperate(QWidget& control) {
  Collector to(control);
  if (auto* button = qobject_cast<QAbstractButton*>(&control)) {
    to.Add("click", [button] { button->click(); });
  } else if (auto* list = qobject_cast<QComboBox*>(&control)) {
    CollectList(*list, to);
  } else if (auto* box = qobject_cast<QLineEdit*>(&control)) {
    if (box->isReadOnly()) return {};
    for (const char* text : {"", "50", "1e9"}) {
      to.Add(std::string("type ") + text, [box, text] { box->setText(text); });
    }
    to.AddKey(Qt::Key_Return);
  } else if (auto* tabs = qobject_cast<QTabWidget*>(&control)) {
    for (int i = 0; i < tabs->count(); ++i) {
      if (tabs->isTabEnabled(i)) to.Add("tab " + std::to_string(i), [tabs, i] { tabs->setCurrentIndex(i); });
    }
  } else if (auto* tree = qobject_cast<QTreeWidget*>(&control)) {
    CollectTree(*tree, to);
  } else if (control.inherits("zth::widgets::LGauge")) {
    CollectGauge(control, to);
  } else if (control.inherits("zth::widgets::GSlider")) {
    CollectSlider(control, to);
  } else if ((control.focusPolicy() & Qt::TabFocus) != 0 && !control.inherits("QAbstractScrollArea")) {
    for (const Qt::Key key : {Qt::Key_Space, Qt::Key_Left, Qt::Key_Up, Qt::Key_Home, Qt::Key_End}) to.AddKey(key);
  }
  return to.ways;
}

}  // namespace zth::testing
