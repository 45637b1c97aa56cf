#pragma once

#include <QAbstractSpinBox>

namespace zth::widgets {

/// A box for a number that is kept elsewhere. It shows what Show has put there and reports what the user wants instead:
/// a number that is typed by Enter or when the focus goes on, once, and steps. Whoever hears of it puts there what has
/// come of it; what is still typed then goes. Escape takes back what is typed. What is no number, one with a comma too,
/// is taken back instead of being reported.
class NumberBox : public QAbstractSpinBox {
  Q_OBJECT
  Q_PROPERTY(double value READ Value WRITE Enter)
  Q_PROPERTY(double minimum READ Minimum)
  Q_PROPERTY(double maximum READ Maximum)

 public:
  explicit NumberBox(QWidget* parent = nullptr);

  /// Puts a number there, as `text` has it.
  void Show(double value, const QString& text);
  void ShowNothing();
  void SetRange(double minimum, double maximum);
  /// The longest text that it has room for.
  void SetRoom(const QString& longest);

  double Value() const { return value_; }  ///< as shown, whatever is typed
  double Minimum() const { return minimum_; }
  double Maximum() const { return maximum_; }
  /// Reports a number on behalf of the user.
  void Enter(double value);

  void stepBy(int steps) override;
  QSize sizeHint() const override;
  QSize minimumSizeHint() const override { return sizeHint(); }

 signals:
  void Entered(double value);
  /// So many steps from a number: the one shown, or one that has been typed.
  void Stepped(double from, int steps);

 protected:
  StepEnabled stepEnabled() const override;
  QValidator::State validate(QString& input, int& pos) const override;
  void keyPressEvent(QKeyEvent* event) override;
  void focusOutEvent(QFocusEvent* event) override;

 private:
  /// Reports what is typed, if it is a number other than the one shown.
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
