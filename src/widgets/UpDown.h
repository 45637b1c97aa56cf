#pragma once

#include <QPointer>
#include <QWidget>

class QHBoxLayout;
class QLineEdit;
class QToolButton;

namespace zth::widgets {

/// The pair of small buttons beside a text box, its buddy. A step takes the number at the start of the box (0 if there
/// is none), moves it by Increment within Min and Max, and writes it into the box, which emits textChanged as for
/// typing. Typed numbers are never limited. Up, Down, Page Up and Page Down (ten steps) also step the box, and so does
/// the wheel while the box has the focus. The pair is enabled and visible when the box is.
class UpDown : public QWidget {
  Q_OBJECT
  Q_PROPERTY(int Min READ Min WRITE SetMin)
  Q_PROPERTY(int Max READ Max WRITE SetMax)
  Q_PROPERTY(int Increment READ Increment WRITE SetIncrement)

 public:
  struct Range {
    int min = 0;
    int max = 100;
    int increment = 1;
  };

  UpDown(QLineEdit* buddy, const Range& range, QWidget* parent = nullptr);

  int Min() const { return range_.min; }
  int Max() const { return range_.max; }
  int Increment() const { return range_.increment; }
  void SetMin(int value) { range_.min = value; }
  void SetMax(int value) { range_.max = value; }
  void SetIncrement(int value) { range_.increment = value; }
  QLineEdit* Buddy() const;  ///< null once it is deleted

  /// Steps the buddy up, or down when negative.
  Q_INVOKABLE void Step(int steps);

  /// The number at the start of the box, 0 if there is none.
  double Value() const;
  /// Writes a number into the box as a step does: rounded and within the range.
  void StepTo(double wanted);

  /// The buddy and the buttons as one compact row; the box is slightly wider than the digits of the range.
  QHBoxLayout* Row();

  QSize sizeHint() const override;
  QSize minimumSizeHint() const override { return sizeHint(); }
  bool eventFilter(QObject* watched, QEvent* event) override;

 protected:
  void resizeEvent(QResizeEvent* event) override;

 private:
  QToolButton* MakeButton(int steps);
  bool StepByKey(int key);

  QPointer<QObject> buddy_;  ///< as a QObject, since events still arrive after it has stopped being a line edit
  Range range_;
  QToolButton* up_ = nullptr;
  QToolButton* down_ = nullptr;
  int wheelRest_ = 0;  ///< eighths of a degree left over below one notch
};

}  // namespace zth::widgets
