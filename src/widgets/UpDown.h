#pragma once

#include <QPointer>
#include <QWidget>

class QHBoxLayout;
class QLineEdit;
class QToolButton;

namespace zth::widgets {

/// The pair of small buttons beside a text box, its buddy. A step takes the number that the box begins with (0 when
/// there is none), moves it by Increment within Min and Max and writes its digits into the box, whose textChanged runs
/// as for typing; what is typed is never limited. The box also steps by Up, Down, Page Up, Page Down (ten steps), and
/// by the wheel while it has the focus. The pair is enabled and visible when the box is.
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
  QLineEdit* Buddy() const;  ///< null once it is gone

  /// Steps the buddy up, or down when negative.
  Q_INVOKABLE void Step(int steps);

  /// The number that the box begins with, 0 when there is none.
  double Value() const;
  /// Writes a number into the box as a step does: whole and within the range.
  void StepTo(double wanted);

  /// The buddy and its pair as one compact row; the box is just wide enough for the digits of the range and a few more.
  QHBoxLayout* Row();

  QSize sizeHint() const override;
  QSize minimumSizeHint() const override { return sizeHint(); }
  bool eventFilter(QObject* watched, QEvent* event) override;

 protected:
  void resizeEvent(QResizeEvent* event) override;

 private:
  QToolButton* MakeButton(int steps);
  bool StepByKey(int key);

  QPointer<QObject> buddy_;  ///< as an object, since events still come when it is a line edit no more
  Range range_;
  QToolButton* up_ = nullptr;
  QToolButton* down_ = nullptr;
  int wheelRest_ = 0;  ///< eighths of a degree below one notch
};

}  // namespace zth::widgets
