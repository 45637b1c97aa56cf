#include "widgets/LGaugeAccess.h"

#include <cstddef>
#include <vector>

#include <QAccessible>
#include <QAccessibleWidget>
#include <QPointer>

#include "widgets/LGauge.h"

namespace zth::widgets {
namespace {

class SliderAccess final : public QAccessibleInterface,
                           public QAccessibleValueInterface,
                           public QAccessibleActionInterface {
 public:
  SliderAccess(LGauge* gauge, int position) : gauge_(gauge), position_(position) {}

  bool isValid() const override { return gauge_ && position_ < static_cast<int>(gauge_->Sliders().size()); }
  QObject* object() const override { return nullptr; }  // part of the gauge, not an object of its own
  QAccessibleInterface* parent() const override { return QAccessible::queryAccessibleInterface(gauge_); }
  QAccessibleInterface* child(int) const override { return nullptr; }
  QAccessibleInterface* childAt(int, int) const override { return nullptr; }
  int childCount() const override { return 0; }
  int indexOfChild(const QAccessibleInterface*) const override { return -1; }
  QAccessible::Role role() const override { return QAccessible::Slider; }

  QRect rect() const override {
    if (!isValid()) return {};
    const QRect inGauge = gauge_->SliderRect(position_);
    return {gauge_->mapToGlobal(inGauge.topLeft()), inGauge.size()};
  }

  QString text(QAccessible::Text kind) const override {
    if (!isValid()) return {};
    if (kind == QAccessible::Name) return gauge_->Sliders().at(static_cast<std::size_t>(position_)).name;
    if (kind == QAccessible::Value) {
      return QString::fromStdString(gauge_->Scale().Text(gauge_->SliderValue(position_)));
    }
    return {};
  }
  void setText(QAccessible::Text, const QString&) override {}

  QAccessible::State state() const override {
    QAccessible::State state;
    if (!isValid()) {
      state.invalid = true;
      return state;
    }
    state.focusable = true;
    state.disabled = !gauge_->isEnabled();
    state.invisible = !gauge_->isVisible();
    state.focused = gauge_->hasFocus() && gauge_->ActiveSlider() == position_;
    return state;
  }

  void* interface_cast(QAccessible::InterfaceType type) override {
    if (type == QAccessible::ValueInterface) return static_cast<QAccessibleValueInterface*>(this);
    return type == QAccessible::ActionInterface ? static_cast<QAccessibleActionInterface*>(this) : nullptr;
  }

  QVariant currentValue() const override { return isValid() ? gauge_->SliderValue(position_) : QVariant(); }
  void setCurrentValue(const QVariant& value) override {
    if (isValid()) gauge_->MoveByUser(position_, value.toDouble());
  }
  QVariant maximumValue() const override { return isValid() ? gauge_->ScaleMax() : QVariant(); }
  QVariant minimumValue() const override { return isValid() ? gauge_->ScaleMin() : QVariant(); }
  QVariant minimumStepSize() const override { return isValid() ? gauge_->Scale().Resolution() : QVariant(); }

  QStringList actionNames() const override { return {increaseAction(), decreaseAction(), setFocusAction()}; }
  void doAction(const QString& name) override {
    if (!isValid() || !gauge_->isEnabled()) return;
    if (name == setFocusAction()) {
      gauge_->setFocus(Qt::OtherFocusReason);
      gauge_->Activate(position_);
    } else if (name == increaseAction() || name == decreaseAction()) {
      gauge_->StepByUser(position_, name == increaseAction() ? 1 : -1);
    }
  }
  QStringList keyBindingsForAction(const QString&) const override { return {}; }

 private:
  QPointer<LGauge> gauge_;
  int position_;
};

class GaugeAccess final : public QAccessibleWidget, public QAccessibleValueInterface {
 public:
  explicit GaugeAccess(LGauge* gauge) : QAccessibleWidget(gauge, QAccessible::Dial) {}
  ~GaugeAccess() override {
    for (const QAccessible::Id id : sliders_) QAccessible::deleteAccessibleInterface(id);
  }

  int childCount() const override { return Gauge() ? static_cast<int>(Gauge()->Sliders().size()) : 0; }
  QAccessibleInterface* child(int index) const override {
    if (index < 0 || index >= childCount()) return nullptr;
    while (static_cast<int>(sliders_.size()) <= index) {
      sliders_.push_back(
          QAccessible::registerAccessibleInterface(new SliderAccess(Gauge(), static_cast<int>(sliders_.size()))));
    }
    return QAccessible::accessibleInterface(sliders_[static_cast<std::size_t>(index)]);
  }
  int indexOfChild(const QAccessibleInterface* wanted) const override {
    for (int i = 0; i < childCount(); ++i) {
      if (child(i) == wanted) return i;
    }
    return -1;
  }
  QAccessibleInterface* childAt(int x, int y) const override {
    for (int i = 0; i < childCount(); ++i) {
      if (child(i)->rect().contains(x, y)) return child(i);
    }
    return nullptr;
  }
  QAccessibleInterface* focusChild() const override {
    return Gauge() && Gauge()->hasFocus() ? child(Gauge()->ActiveSlider()) : nullptr;
  }

  QString text(QAccessible::Text kind) const override {
    if (kind == QAccessible::Value && Gauge()) return Gauge()->Caption().trimmed();
    return QAccessibleWidget::text(kind);
  }

  void* interface_cast(QAccessible::InterfaceType type) override {
    if (type == QAccessible::ValueInterface) return static_cast<QAccessibleValueInterface*>(this);
    return QAccessibleWidget::interface_cast(type);
  }

  // The reading; read-only.
  QVariant currentValue() const override { return Gauge() ? Gauge()->Reading() : QVariant(); }
  void setCurrentValue(const QVariant&) override {}
  QVariant maximumValue() const override { return Gauge() ? Gauge()->ScaleMax() : QVariant(); }
  QVariant minimumValue() const override { return Gauge() ? Gauge()->ScaleMin() : QVariant(); }
  QVariant minimumStepSize() const override { return 0; }

 private:
  LGauge* Gauge() const { return qobject_cast<LGauge*>(object()); }

  mutable std::vector<QAccessible::Id> sliders_;
};

QAccessibleInterface* Make(const QString&, QObject* object) {
  auto* gauge = qobject_cast<LGauge*>(object);
  return gauge ? new GaugeAccess(gauge) : nullptr;
}

}  // namespace

void InstallLGaugeAccess() {
  QAccessible::installFactory(Make);
}

}  // namespace zth::widgets
