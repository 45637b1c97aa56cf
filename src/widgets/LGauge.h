#pragma once

#include <map>
#include <vector>

#include <QPixmap>
#include <QSet>
#include <QString>
#include <QVariantList>
#include <QWidget>

#include "widgets/LGaugeFace.h"
#include "widgets/LGaugeScale.h"

namespace zth::widgets {

/// A draggable slider of a gauge: the number by which PointerIndex selects it, and its accessible name.
struct GaugeSlider {
  int number = 0;
  SliderKind kind = SliderKind::Sole;
  QString name;
};

/// A dial gauge with a linear scale, numbered needles, and numbered sliders on its rim. Needle 0 is a mark on the
/// scale, needle 1 is the hand; neither is shown before it is first written. Values outside the scale are stored
/// unchanged and shown at its nearer end.
class LGauge : public QWidget {
  Q_OBJECT
  Q_PROPERTY(double ScaleMin READ ScaleMin WRITE SetScaleMin)
  Q_PROPERTY(double ScaleMax READ ScaleMax WRITE SetScaleMax)
  Q_PROPERTY(int NeedleIndex READ NeedleIndex WRITE SetNeedleIndex)
  Q_PROPERTY(double NeedleValue READ NeedleValue WRITE SetNeedleValue)
  Q_PROPERTY(int PointerIndex READ PointerIndex WRITE SetPointerIndex)
  Q_PROPERTY(double PointerValue READ PointerValue WRITE SetPointerValue)
  Q_PROPERTY(QString Caption READ Caption WRITE SetCaption)
  Q_PROPERTY(QVariantList SliderNumbers READ SliderNumbers)
  Q_PROPERTY(bool Stale READ Stale WRITE SetStale)

 public:
  explicit LGauge(QWidget* parent = nullptr);

  /// Declares the sliders that the user can reach, in Tab order. Their values are kept.
  void SetSliders(std::vector<GaugeSlider> sliders);
  /// Slider 2 for the low limit and slider 3 for the high limit; or slider 3 for a single limit.
  static std::vector<GaugeSlider> LowAndHighSliders();
  static std::vector<GaugeSlider> SoleSlider();

  double ScaleMin() const { return scaleMin_; }
  double ScaleMax() const { return scaleMax_; }
  int NeedleIndex() const { return needleIndex_; }
  double NeedleValue() const;  ///< of the selected needle; 0 if never written
  int PointerIndex() const { return pointerIndex_; }
  double PointerValue() const;  ///< of the selected slider; 0 if never written
  QString Caption() const { return caption_; }
  QVariantList SliderNumbers() const;

  void SetScaleMin(double value);
  void SetScaleMax(double value);
  void SetNeedleIndex(int index) { needleIndex_ = index; }
  void SetNeedleValue(double value);
  void SetPointerIndex(int index) { pointerIndex_ = index; }
  void SetPointerValue(double value);
  void SetCaption(const QString& text);
  /// Whether the reading is old: hand and caption are then grey. The caption should say how old.
  bool Stale() const { return stale_; }
  void SetStale(bool stale);
  /// Sets the values that the keys move a slider to, in ascending order, including its present value: arrow keys move
  /// to the next one, Page keys by ten, Home and End to the first and last. A slider whose value is not among its stops
  /// moves by round steps that suit the scale.
  void SetSliderStops(int number, std::vector<double> stops);

  /// The sliders in Tab order, for assistive technology.
  const std::vector<GaugeSlider>& Sliders() const { return sliders_; }
  int ActiveSlider() const { return active_; }
  double SliderValue(int position) const;
  double Reading() const;  ///< of needle 1
  QRect SliderRect(int position) const;
  DialScale Scale() const { return {scaleMin_, scaleMax_}; }
  /// The value of a slider after `steps` presses of an arrow key.
  double Stepped(int position, int steps) const;
  /// Makes the slider at `position` the one that the keys move.
  void Activate(int position);
  /// Moves a slider for the user, to a value or by a number of steps, and reports it at once.
  void MoveByUser(int position, double value);
  void StepByUser(int position, int steps);

  QSize sizeHint() const override;
  QSize minimumSizeHint() const override;

 signals:
  /// The user has moved a slider: emitted once, at the end of a drag or of a series of key presses. Never emitted for a
  /// write from code.
  void SliderChanged();

 protected:
  void paintEvent(QPaintEvent* event) override;
  void changeEvent(QEvent* event) override;
  void hideEvent(QHideEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void leaveEvent(QEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void keyReleaseEvent(QKeyEvent* event) override;
  void focusInEvent(QFocusEvent* event) override;
  void focusOutEvent(QFocusEvent* event) override;
  bool focusNextPrevChild(bool next) override;

 private:
  enum class Gesture { None, Drag, Keys };

  void Begin(Gesture gesture, int position);
  bool CanMove(int position) const;
  void MoveActive(double value);
  /// Ends the gesture. Its change is kept and reported, or undone.
  void End(bool keep);
  void Hover(int position);
  int SliderAt(const QPointF& point) const;
  int TaggedSlider() const;
  double PointerAngle(const QPointF& point) const;
  void PaintKeptFace(QPainter& painter, const DialMeasures& measures);
  void InvalidateFace();
  void TellValue(int child, double value);

  double scaleMin_ = 0;
  double scaleMax_ = 100;
  int needleIndex_ = 1;
  int pointerIndex_ = 3;
  std::map<int, double> needles_;
  std::map<int, double> pointers_;
  QString caption_;
  bool stale_ = false;
  std::map<int, std::vector<double>> stops_;
  std::vector<GaugeSlider> sliders_;

  int active_ = 0;           ///< position of the slider that the keys move
  int hovered_ = -1;         ///< position of the slider under the mouse
  bool byKeyboard_ = false;  ///< the focus was set or used by keyboard
  Gesture gesture_ = Gesture::None;
  double startValue_ = 0;  ///< of the active slider, for undoing
  double dragAngle_ = 0;   ///< of the active slider; may be beyond the scale
  double lastAngle_ = 0;   ///< of the mouse
  QSet<int> heldKeys_;

  QPixmap face_;
};

}  // namespace zth::widgets
