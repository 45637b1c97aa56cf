#pragma once

#include <QTimer>
#include <QWidget>

namespace zth::widgets {

/// A slider from 0 to 100 percent that reports changes by the user, but none by code. Every report carries the slider's
/// index in its control array. A change by key or wheel is reported as MouseDown, Change, MouseUp. During a drag,
/// Change is sent at most every 50 ms, and always with the last value before MouseUp.
class GSlider : public QWidget {
  Q_OBJECT
  Q_PROPERTY(double Value READ Value WRITE SetValue USER true)
  Q_PROPERTY(bool Enabled READ isEnabled WRITE setEnabled)
  Q_PROPERTY(int Index READ Index WRITE SetIndex)
  Q_PROPERTY(bool Stale READ Stale WRITE SetStale)

 public:
  static constexpr int kPaceMs = 50;
  static constexpr double kMinimum = 0;
  static constexpr double kMaximum = 100;

  explicit GSlider(QWidget* parent = nullptr);

  double Value() const { return value_; }
  /// Clamped to 0 to 100; NaN is ignored. Fractions are kept; the user sets whole percents.
  void SetValue(double value);
  /// Whether the value is old: groove and number are then pale.
  bool Stale() const { return stale_; }
  void SetStale(bool stale);
  int Index() const { return index_; }
  void SetIndex(int index) { index_ = index; }

  /// The single-shot timer of kPaceMs that delays Change during a drag. A clock that drives timers may adopt it.
  QTimer& PaceTimer() { return pace_; }
  bool Held() const { return held_; }
  /// Moves the slider for the user, with its three reports.
  void StepByUser(double value);

  QSize sizeHint() const override;
  QSize minimumSizeHint() const override;

 public slots:
  /// The same signals with this slider's own index, for tools that call them by name.
  void MouseDown() { emit MouseDown(index_); }
  void MouseUp() { emit MouseUp(index_); }
  void Change() { emit Change(index_); }

 signals:
  void MouseDown(int index);  ///< the user grabs the slider
  void MouseUp(int index);    ///< the user releases it
  void Change(int index);     ///< the user has changed Value

 protected:
  void paintEvent(QPaintEvent* event) override;
  void changeEvent(QEvent* event) override;
  void hideEvent(QHideEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void wheelEvent(QWheelEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void enterEvent(QEnterEvent* event) override;
  void leaveEvent(QEvent* event) override;

 private:
  struct Layout;
  Layout Measure() const;

  void DragTo(double value);
  void ReportDrag();
  /// Ends the drag. A pending change is reported first, unless `report` is false.
  void Release(bool report);

  double value_ = 0;
  int index_ = 0;
  bool held_ = false;
  bool hovered_ = false;
  bool stale_ = false;
  double startValue_ = 0;     ///< value at the start of the drag
  double reportedValue_ = 0;  ///< value last reported in the drag
  double grabOffset_ = 0;     ///< from the thumb's centre to the mouse, in pixels
  int wheelRest_ = 0;         ///< eighths of a degree left over below one notch
  QTimer pace_;
};

}  // namespace zth::widgets
