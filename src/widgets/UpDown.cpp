#include "widgets/UpDown.h"

#include <algorithm>
#include <cmath>

#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLineEdit>
#include <QPainter>
#include <QPolygonF>
#include <QStyle>
#include <QStyleOption>
#include <QToolButton>
#include <QWheelEvent>

#include "base/NumberText.h"
#include "base/Rounding.h"
#include "widgets/ActionAccess.h"
#include "widgets/Colours.h"

namespace zth::widgets {
namespace {

constexpr int kPageSteps = 10;
constexpr int kNotch = 120;  // wheel turn in eighths of a degree
constexpr int kSpareDigits = 2;

// A button half the height of a text box; a style's own arrow does not get that small.
class ArrowButton final : public QToolButton {
 public:
  ArrowButton(bool up, QWidget* parent) : QToolButton(parent), up_(up) {
    setFocusPolicy(Qt::NoFocus);
    setAutoRepeat(true);
    setAutoRepeatDelay(400);
    setAutoRepeatInterval(60);
  }
  QSize sizeHint() const override { return {8, 6}; }
  QSize minimumSizeHint() const override { return sizeHint(); }

 protected:
  void paintEvent(QPaintEvent*) override {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QPalette& colours = palette();
    const bool dark = IsDark(colours);
    QColor ground = colours.color(QPalette::Button);
    if (isDown()) {
      ground = dark ? ground.lighter(190) : ground.darker(122);
    } else if (isEnabled() && underMouse()) {
      ground = dark ? ground.lighter(150) : ground.lighter(106);
    }
    const QColor edge =
        dark ? colours.color(QPalette::Window).lighter(190) : colours.color(QPalette::Window).darker(150);
    painter.setPen(QPen(edge, 1));
    painter.setBrush(ground);
    // The two buttons share the line between them.
    painter.drawRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, up_ ? 0.5 : -0.5));
    const double half = std::clamp(std::min(width() * 0.22, height() * 0.30), 2.0, 6.0);
    const QPointF c = QRectF(rect()).center() + QPointF(0, up_ ? 0.5 : 0);
    const double rise = up_ ? -half * 0.55 : half * 0.55;
    const QPolygonF arrow({c + QPointF(-half, -rise), c + QPointF(half, -rise), c + QPointF(0, rise)});
    painter.setPen(Qt::NoPen);
    painter.setBrush(colours.color(QPalette::ButtonText));
    painter.drawPolygon(arrow);
  }

 private:
  bool up_;
};

/// Has the same name as its box; its two buttons are its parts.
class UpDownAccess final : public ActionAccess, public QAccessibleValueInterface {
 public:
  explicit UpDownAccess(UpDown* pair)
      : ActionAccess(pair, QAccessible::SpinBox, Steps([pair](int step) { pair->Step(step); })) {}

  void* interface_cast(QAccessible::InterfaceType type) override {
    if (type == QAccessible::ValueInterface) return static_cast<QAccessibleValueInterface*>(this);
    return ActionAccess::interface_cast(type);
  }
  QString text(QAccessible::Text kind) const override {
    QLineEdit* box = Pair().Buddy();
    if (box != nullptr && kind == QAccessible::Name) return QAccessible::queryAccessibleInterface(box)->text(kind);
    if (box != nullptr && kind == QAccessible::Value) return box->text();
    return ActionAccess::text(kind);
  }
  QVariant currentValue() const override { return Pair().Value(); }
  void setCurrentValue(const QVariant& value) override { Pair().StepTo(value.toDouble()); }
  QVariant maximumValue() const override { return Pair().Max(); }
  QVariant minimumValue() const override { return Pair().Min(); }
  QVariant minimumStepSize() const override { return Pair().Increment(); }

 private:
  UpDown& Pair() const { return *qobject_cast<UpDown*>(object()); }
};

QAccessibleInterface* Make(const QString&, QObject* object) {
  auto* pair = qobject_cast<UpDown*>(object);
  return pair != nullptr ? new UpDownAccess(pair) : nullptr;
}

}  // namespace

UpDown::UpDown(QLineEdit* buddy, const Range& range, QWidget* parent)
    : QWidget(parent), buddy_(buddy), range_(range), up_(MakeButton(1)), down_(MakeButton(-1)) {
  QAccessible::installFactory(Make);
  setFocusPolicy(Qt::NoFocus);
  setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
  connect(buddy, &QLineEdit::textChanged, this, [this] {
    if (!QAccessible::isActive()) return;
    QAccessibleValueChangeEvent event(this, Value());
    QAccessible::updateAccessibility(&event);
  });
  setEnabled(buddy->isEnabled());
  buddy->installEventFilter(this);
}

QToolButton* UpDown::MakeButton(int steps) {
  auto* button = new ArrowButton(steps > 0, this);
  button->setAccessibleName(steps > 0 ? tr("Increase") : tr("Decrease"));
  connect(button, &QToolButton::clicked, this, [this, steps] {
    if (QLineEdit* box = Buddy()) box->setFocus(Qt::OtherFocusReason);
    Step(steps);
  });
  return button;
}

QLineEdit* UpDown::Buddy() const {
  return qobject_cast<QLineEdit*>(buddy_.data());
}

double UpDown::Value() const {
  const QLineEdit* box = Buddy();
  return box != nullptr ? base::LeadingDecimal(box->text().toStdString()) : 0;
}

// Fractions can be typed but not stepped to: "32.5" steps from the nearest whole number.
void UpDown::Step(int steps) {
  StepTo(base::RoundHalfEven(Value()) + static_cast<double>(steps) * range_.increment);
}

void UpDown::StepTo(double wanted) {
  const QPointer<QLineEdit> box = Buddy();
  if (!box || !box->isEnabled() || box->isReadOnly() || std::isnan(wanted)) return;
  const double low = std::min(range_.min, range_.max);
  const double high = std::max(range_.min, range_.max);
  box->setText(QString::number(base::RoundToInt(std::clamp(wanted, low, high))));
  if (box && box->hasFocus()) box->selectAll();  // the text's handler may have closed the window
}

bool UpDown::StepByKey(int key) {
  switch (key) {
    case Qt::Key_Up:
      Step(1);
      return true;
    case Qt::Key_Down:
      Step(-1);
      return true;
    case Qt::Key_PageUp:
      Step(kPageSteps);
      return true;
    case Qt::Key_PageDown:
      Step(-kPageSteps);
      return true;
    default:
      return false;
  }
}

bool UpDown::eventFilter(QObject* watched, QEvent* event) {
  const QLineEdit* box = Buddy();
  if (!box || watched != box) return QWidget::eventFilter(watched, event);
  switch (event->type()) {
    case QEvent::KeyPress: {
      const auto* key = static_cast<QKeyEvent*>(event);
      return (key->modifiers() & ~Qt::KeypadModifier) == Qt::NoModifier && StepByKey(key->key());
    }
    case QEvent::Wheel: {
      // Without the focus, the wheel scrolls whatever is behind the box.
      if (!box->hasFocus()) return false;
      wheelRest_ += static_cast<QWheelEvent*>(event)->angleDelta().y();
      const int notches = wheelRest_ / kNotch;
      wheelRest_ -= notches * kNotch;
      if (notches != 0) Step(notches);
      event->accept();
      return true;
    }
    case QEvent::EnabledChange:
      setEnabled(box->isEnabled());
      return false;
    case QEvent::ShowToParent:
    case QEvent::HideToParent:
      if (parentWidget()) setVisible(!box->isHidden());
      return false;
    default:
      return false;
  }
}

QHBoxLayout* UpDown::Row() {
  auto* row = new QHBoxLayout;
  row->setContentsMargins(0, 0, 0, 0);
  row->setSpacing(0);
  if (QLineEdit* box = Buddy()) {
    const auto digits = std::max(QString::number(range_.min).size(), QString::number(range_.max).size()) + kSpareDigits;
    const int text = box->fontMetrics().horizontalAdvance(QLatin1Char('0')) * static_cast<int>(digits);
    box->setFixedWidth(text + box->sizeHint().height());  // the height approximates frame and margins
    row->addWidget(box);
  }
  row->addWidget(this);
  row->addStretch();
  return row;
}

QSize UpDown::sizeHint() const {
  const QLineEdit* box = Buddy();
  const int height = box ? box->sizeHint().height() : fontMetrics().height() * 3 / 2;
  return {std::max(14, height * 3 / 4), height};
}

void UpDown::resizeEvent(QResizeEvent*) {
  const int half = height() / 2;
  up_->setGeometry(0, 0, width(), half);
  down_->setGeometry(0, half, width(), height() - half);
}

}  // namespace zth::widgets
