#pragma once

#include <QAbstractSpinBox>

namespace zth::widgets {

/// A box for a number that is stored elsewhere. It shows the number set with Show and signals what the user wants
/// instead: a typed number, once, on Enter or when the focus leaves, and steps. The receiver then calls Show with the
/// result, which replaces anything still typed. Escape restores the number shown. So does text that is not a number,
/// including one with a comma; it is not reported.
class NumberBox : public QAbstractSpinBox {
  Q_OBJECT
  Q_PROPERTY(double value READ Value WRITE Enter)
  Q_PROPERTY(double minimum READ Minimum)
  Q_PROPERTY(double maximum READ Maximum)

 public:
  explicit NumberBox(QWidget* parent = nullptr);

  /// Shows a number, formatted as `text`.
  void Show(double value, const QString& text);
  void ShowNothing();
  void SetRange(double minimum, double maximum);
  /// Makes the box wide enough for its longest text.
  void SetRoom(const QString& longest);

  double Value() const { return value_; }  ///< the number shown, whatever is typed
  double Minimum() const { return minimum_; }
  double Maximum() const { return maximum_; }
  /// Reports a number on behalf of the user.
  void Enter(double value);

  void stepBy(int steps) override;
  QSize sizeHint() const override;
  QSize minimumSizeHint() const override { return sizeHint(); }

 signals:
  void Entered(double value);
  /// A number of steps from a start number: the one shown, or a typed one.
  void Stepped(double from, int steps);

 protected:
  StepEnabled stepEnabled() const override;
  QValidator::State validate(QString& input, int& pos) const override;
  void keyPressEvent(QKeyEvent* event) override;
  void focusOutEvent(QFocusEvent* event) override;

 private:
  /// Reports the typed text if it is a number other than the one shown.
  void Report();
  void TakeBack();
  bool IsTyped() const;

  double value_ = 0;
  QString shown_;
  double minimum_ = 0;
  double maximum_ = 0;
  QString longest_;
};

}  // namespace zth::widgets
