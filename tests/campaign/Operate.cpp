#include "tests/campaign/Operate.h"

#include <array>

#include <QAbstractButton>
#include <QComboBox>
#include <QLineEdit>
#include <QPointer>
#include <QTabWidget>
#include <QTest>
#include <QTreeWidget>

#include "tests/support/Seen.h"
#include "widgets/GSlider.h"
#include "widgets/LGauge.h"

namespace zth::testing {
namespace {

/// Texts that a user may type, valid and invalid. Only the first few are used if each costs a separate run.
constexpr std::array kTexts{"",     "50",    "1e9",  "0",     "1",          "100",      "255",
                            "256",  "-1",    "-128", "--",    "2147483648", "\xC2\xB0", "127",
                            "3.14", "-1e30", "%n",   "inf",   "0xFF",       "ff",       "4C",
                            "44H",  "40000", " 12 ", "32767", "12abc",      "nan",      "9999999999999999999"};
constexpr std::size_t kFew = 3;

bool IsPart(const QWidget& control) {
  // The parts of a Qt control are operated through the control.
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

std::vector<Way> WaysToOperate(QWidget& control, Extent extent) {  // NOLINT(readability-function-size): a branch a kind
  std::vector<Way> ways;
  const bool all = extent == Extent::All;
  const auto add = [&](const std::string& what, std::function<void()> act) {
    ways.push_back({Told(control) + ": " + what, std::move(act)});
  };
  const auto addKeys = [&](std::initializer_list<Qt::Key> keys) {
    for (const Qt::Key key : keys) {
      add("key " + QKeySequence(key).toString().toStdString(), [&control, key] { QTest::keyClick(&control, key); });
    }
  };
  if (auto* button = qobject_cast<QAbstractButton*>(&control)) {
    add("click", [button] { button->click(); });
  } else if (auto* list = qobject_cast<QComboBox*>(&control)) {
    for (int i = 0; i < list->count(); ++i) {
      if (!all && i != 0 && i != list->count() / 2 && i != list->count() - 1) continue;
      add("pick " + list->itemText(i).toStdString(), [alive = QPointer(list), i] {
        alive->setCurrentIndex(i);
        if (alive) emit alive->activated(i);
      });
    }
  } else if (auto* box = qobject_cast<QLineEdit*>(&control)) {
    if (box->isReadOnly()) return {};
    for (std::size_t i = 0; i < (all ? kTexts.size() : kFew); ++i) {
      add(std::string("put ") + kTexts[i], [box, text = kTexts[i]] { box->setText(text); });
      if (!all) continue;
      add(std::string("type ") + kTexts[i], [alive = QPointer(box), text = kTexts[i]] {
        for (const QChar c : QString(text)) {
          if (alive) QTest::keyClick(alive, c.toLatin1());
        }
      });
    }
    addKeys({Qt::Key_Return});
  } else if (auto* tabs = qobject_cast<QTabWidget*>(&control)) {
    for (int i = 0; i < tabs->count(); ++i) {
      if (tabs->isTabEnabled(i)) add("tab " + std::to_string(i), [tabs, i] { tabs->setCurrentIndex(i); });
    }
  } else if (auto* tree = qobject_cast<QTreeWidget*>(&control)) {
    QList<QTreeWidgetItem*> leaves;
    for (QTreeWidgetItemIterator at(tree, QTreeWidgetItemIterator::NoChildren); *at != nullptr; ++at) leaves << *at;
    for (qsizetype i = 0; i < leaves.size(); i += std::max<qsizetype>(1, all ? 1 : (leaves.size() - 1) / 2)) {
      add("click " + leaves[i]->text(0).toStdString(), [tree, leaf = leaves[i]] { tree->setCurrentItem(leaf); });
    }
  } else if (auto* gauge = qobject_cast<widgets::LGauge*>(&control)) {
    for (const QVariant& number : gauge->property("SliderNumbers").toList()) {
      for (const double share : {0.0, 0.4, 1.0}) {
        const double value = gauge->ScaleMin() + share * (gauge->ScaleMax() - gauge->ScaleMin());
        add("slider " + number.toString().toStdString() + " to " + std::to_string(value), [gauge, number, value] {
          gauge->setProperty("PointerIndex", number);
          gauge->setProperty("PointerValue", value);
          emit gauge->SliderChanged();
        });
      }
    }
  } else if (auto* slider = qobject_cast<widgets::GSlider*>(&control)) {
    for (const double value : {0.0, 37.0, 100.0}) {
      add("slide to " + std::to_string(value), [slider, value] {
        slider->MouseDown();
        slider->setProperty("Value", value);
        slider->Change();
        slider->MouseUp();
      });
    }
  } else if ((control.focusPolicy() & Qt::TabFocus) != 0 && !control.inherits("QAbstractScrollArea")) {
    addKeys({Qt::Key_Space, Qt::Key_Left, Qt::Key_Up, Qt::Key_Home, Qt::Key_End});
  }
  return ways;
}

}  // namespace zth::testing
