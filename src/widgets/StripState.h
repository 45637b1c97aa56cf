#pragma once

#include <QColor>
#include <QVariantList>

#include "widgets/StripScene.h"
#include "widgets/TwipsWidget.h"

namespace zth::widgets {

/// A chart's contents under the names that the windows use: ranges, the chosen label and axis, traces. The capitalised
/// properties and methods can also be read and called by name.
class StripState : public TwipsWidget {
  Q_OBJECT
  Q_PROPERTY(double XSpan READ XSpan WRITE SetXSpan)
  Q_PROPERTY(double XEnd READ XEnd WRITE SetXEnd)
  Q_PROPERTY(int LabelIndex READ LabelIndex WRITE SetLabelIndex)
  Q_PROPERTY(QString Caption READ Caption WRITE SetCaption)
  Q_PROPERTY(float LabelTop READ LabelTop WRITE SetLabelTop)
  Q_PROPERTY(float LabelLeft READ LabelLeft WRITE SetLabelLeft)
  Q_PROPERTY(int LabelTrace READ LabelTrace WRITE SetLabelTrace)
  Q_PROPERTY(bool LabelLine READ LabelLine WRITE SetLabelLine)
  Q_PROPERTY(QColor LabelColour READ LabelColour)
  Q_PROPERTY(int AxisIndex READ AxisIndex WRITE SetAxisIndex)
  Q_PROPERTY(double AxisMin READ AxisMin WRITE SetAxisMin)
  Q_PROPERTY(double AxisMax READ AxisMax WRITE SetAxisMax)
  Q_PROPERTY(double AxisAreaTop READ AxisAreaTop WRITE SetAxisAreaTop)
  Q_PROPERTY(double AxisAreaBottom READ AxisAreaBottom)
  Q_PROPERTY(int Index READ Index)
  Q_PROPERTY(bool Held READ Held NOTIFY HeldChanged)
  Q_PROPERTY(bool TimeOfDay READ TimeOfDay WRITE SetTimeOfDay NOTIFY TimeOfDayChanged)
  Q_PROPERTY(int TraceCount READ TraceCount)
  Q_PROPERTY(int AxisCount READ AxisCount)
  Q_PROPERTY(QString Summary READ Summary)

 public:
  bool IsXY() const { return scene_.IsXY(); }

  double XSpan() const;
  void SetXSpan(double span);
  double XEnd() const;
  void SetXEnd(double end);
  bool Held() const;

  /// Whether the time axis, its cursor and saved data show the local time of day. Off at first.
  bool TimeOfDay() const;
  /// Does nothing if the chart cannot know the time of day.
  void SetTimeOfDay(bool on);
  virtual bool HasTimeOfDay() const = 0;

  /// Writing to a slot that is not in the set-up creates a legend row.
  int LabelIndex() const { return labelIndex_; }
  void SetLabelIndex(int index) { labelIndex_ = index; }
  QString Caption() const;
  void SetCaption(const QString& caption);
  float LabelTop() const;
  void SetLabelTop(float top);
  float LabelLeft() const;
  void SetLabelLeft(float left);
  int LabelTrace() const;
  void SetLabelTrace(int trace);
  bool LabelLine() const;
  void SetLabelLine(bool line);
  QColor LabelColour() const;

  int AxisIndex() const { return axisIndex_; }
  /// An index without an axis is ignored.
  void SetAxisIndex(int index);
  double AxisMin() const;
  void SetAxisMin(double min);
  double AxisMax() const;
  void SetAxisMax(double max);
  double AxisAreaTop() const;
  /// Moves the border to the zone above, as the user can; does nothing for the top zone.
  void SetAxisAreaTop(double top);
  double AxisAreaBottom() const;

  int Index() const;
  int TraceCount() const;
  int AxisCount() const;
  QString Title() const;
  /// The latest values as a sentence.
  QString Summary() const;

  /// Pairs [x, y], oldest first: the ends of the summaries, then all recent samples.
  Q_INVOKABLE QVariantList TracePoints(int trace) const;
  Q_INVOKABLE QColor TraceColour(int trace) const;
  Q_INVOKABLE int TraceWidth(int trace) const;
  Q_INVOKABLE int TraceAxis(int trace) const;
  /// The trace's Qt::PenStyle: 1 solid, 2 dashed, 3 dotted.
  Q_INVOKABLE int VariableLineStyle(int trace) const;
  Q_INVOKABLE QString TraceName(int trace) const;
  Q_INVOKABLE bool TraceVisible(int trace) const;
  Q_INVOKABLE void SetTraceVisible(int trace, bool visible);
  bool HasLegend(int trace) const;

 signals:
  void HeldChanged(bool held);
  void TimeOfDayChanged(bool on);

 protected:
  explicit StripState(QWidget* parent) : TwipsWidget(parent) {}

  virtual void Changed(StripChange change) = 0;
  void TellHeld();
  /// Sets up the chart from scratch, including all data and ranges.
  void Renew(const StripSetup& setup);

  StripScene scene_;

 private:
  const StripView::Axis& ChosenAxis() const;
  const StripLabel* FindLabel() const;
  /// The chosen label slot, created if missing.
  StripLabel& ChosenLabel();

  int labelIndex_ = 0;
  int axisIndex_ = 0;
  bool held_ = false;  ///< as last reported by HeldChanged
};

}  // namespace zth::widgets
