#include "widgets/NumberBox.h"

#include <QAccessible>
#include <QKeyEvent>
#include <QLineEdit>
#include <QPointer>
#include <QRegularExpression>
#include <QStyleOptionSpinBox>

#include "base/NumberText.h"

namespace zth::widgets {

NumberBox::NumberBox(QWidget* parent) : QAbstractSpinBox(parent) {
  setSizePolicy(QSizePolicy::Minimum, QSizePolicy::Fixed);
  setAlignment(Qt::AlignRight);
}

void NumberBox::Show(double value, const QString& text) {
  value_ = value;
  const bool changed = text != shown_;
  shown_ = text;
  TakeBack();
  if (!changed || !QAccessible::isActive()) return;
  QAccessibleValueChangeEvent event(this, value);
  QAccessible::updateAccessibility(&event);
}

void NumberBox::ShowNothing() {
  Show(0, {});
}

void NumberBox::SetRange(double minimum, double maximum) {
  minimum_ = minimum;
  maximum_ = maximum;
}

void NumberBox::SetRoom(const QString& longest) {
  longest_ = longest;
  updateGeometry();
}

bool NumberBox::IsTyped() const {
  return lineEdit()->text() != shown_;
}

void NumberBox::TakeBack() {
  if (IsTyped()) lineEdit()->setText(shown_);
}

void NumberBox::Report() {
  if (!IsTyped()) return;
  const std::string typed = text().toStdString();
  const bool number = base::IsDecimal(typed);
  TakeBack();  // first: what runs next may take the focus away, which must not report the text again
  if (number) Enter(base::LeadingDecimal(typed));
}

void NumberBox::Enter(double value) {
  if (isEnabled()) emit Entered(value);
}

void NumberBox::stepBy(int steps) {
  const std::string typed = text().toStdString();
  const double from = IsTyped() && base::IsDecimal(typed) ? base::LeadingDecimal(typed) : value_;
  TakeBack();
  const QPointer<NumberBox> self(this);  // a failed write closes the window
  emit Stepped(from, steps);
  if (self != nullptr) selectAll();
}

QAbstractSpinBox::StepEnabled NumberBox::stepEnabled() const {
  return StepUpEnabled | StepDownEnabled;
}

QValidator::State NumberBox::validate(QString& input, int& /*pos*/) const {
  static const QRegularExpression kOther("[^-+0-9.,]");
  return input.contains(kOther) ? QValidator::Invalid : QValidator::Acceptable;
}

void NumberBox::keyPressEvent(QKeyEvent* event) {
  if (event->key() == Qt::Key_Escape && IsTyped()) {
    TakeBack();
    selectAll();
    event->accept();
    return;
  }
  const bool enter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
  if (!enter) {
    QAbstractSpinBox::keyPressEvent(event);
    return;
  }
  const QPointer<NumberBox> self(this);
  Report();
  if (self == nullptr) return;
  selectAll();
  event->ignore();  // so that the window handles the key too
}

void NumberBox::focusOutEvent(QFocusEvent* event) {
  const QPointer<NumberBox> self(this);
  // Users who look something up in another window or a menu come back to a half-typed number.
  const bool stays = event->reason() == Qt::ActiveWindowFocusReason || event->reason() == Qt::PopupFocusReason;
  if (!stays) Report();
  if (self != nullptr) QAbstractSpinBox::focusOutEvent(event);
}

QSize NumberBox::sizeHint() const {
  QStyleOptionSpinBox option;
  initStyleOption(&option);
  const QSize text(fontMetrics().horizontalAdvance(longest_ + "0"), lineEdit()->sizeHint().height());
  return style()->sizeFromContents(QStyle::CT_SpinBox, &option, text, this);
}

}  // namespace zth::widgets
