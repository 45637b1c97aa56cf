#pragma once

#include <functional>
#include <memory>
#include <optional>

#include <QByteArray>
#include <QColor>
#include <QImage>
#include <QVariantList>
#include <QWidget>

#include "widgets/StripOutlets.h"
#include "widgets/StripSetup.h"

namespace zth::widgets {

/// A live chart. A time chart's X is seconds, 0 at the first sample; its window stands where the set-up puts it until
/// the newest sample reaches the right edge and follows it from then on, unless the user holds it. An X-Y chart draws
/// paths.
///
/// The capitalised properties and methods are the chart's contract with the windows, readable and callable by name as
/// well.
class Strip : public QWidget {
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
  Q_PROPERTY(bool Visible READ isVisible WRITE setVisible)
  Q_PROPERTY(int Left READ Left WRITE SetLeft)
  Q_PROPERTY(int Top READ Top WRITE SetTop)
  Q_PROPERTY(int Width READ Width WRITE SetWidth)
  Q_PROPERTY(int Height READ Height WRITE SetHeight)
  Q_PROPERTY(int Index READ Index)
  Q_PROPERTY(bool Held READ Held NOTIFY HeldChanged)
  Q_PROPERTY(int TraceCount READ TraceCount)
  Q_PROPERTY(int AxisCount READ AxisCount)
  Q_PROPERTY(QString Summary READ Summary)

 public:
  enum class File { Png, Svg, Csv };

  /// `clock` gives seconds of a monotonic clock. `outlets`, when there, let the user copy and save pictures and data.
  explicit Strip(std::function<double()> clock, QWidget* parent = nullptr,
                 const std::optional<StripOutlets>& outlets = std::nullopt);
  ~Strip() override;

  /// Describes the chart, all data and ranges anew.
  void SetUp(const StripSetup& setup);
  bool IsXY() const;

  /// Removes all points of all traces; a time chart begins at 0 again. The user's Y ranges, zones and hidden traces
  /// stay.
  Q_INVOKABLE void ClearData();
  /// Adds a point. In a time chart x is the sample's time, not before the trace's newest. Unknown traces are passed
  /// over.
  Q_INVOKABLE void PlotXY(int trace, double x, double y);
  /// Adds the newest sample to a time chart, at the clock's time; NaN interrupts the line. Nothing in an X-Y chart. The
  /// traces fed in one go share one instant.
  Q_INVOKABLE void PlotValue(int trace, double value);

  double XSpan() const;
  void SetXSpan(double span);
  double XEnd() const;
  void SetXEnd(double end);
  bool Held() const;

  /// A slot that is not in the set-up becomes a legend row with the first put to it.
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
  /// An index without an axis is not taken.
  void SetAxisIndex(int index);
  double AxisMin() const;
  void SetAxisMin(double min);
  double AxisMax() const;
  void SetAxisMax(double max);
  double AxisAreaTop() const;
  /// Moves the border to the zone above, as the user does; nothing for the uppermost zone.
  void SetAxisAreaTop(double top);
  double AxisAreaBottom() const;

  /// Placement in twips.
  int Left() const;
  void SetLeft(int twips);
  int Top() const;
  void SetTop(int twips);
  int Width() const;
  void SetWidth(int twips);
  int Height() const;
  void SetHeight(int twips);

  int Index() const;
  int TraceCount() const;
  int AxisCount() const;
  QString Title() const;
  /// The latest values in words.
  QString Summary() const;

  /// Pairs [x, y], oldest first: all samples of the recent past, before them the ends of the summaries.
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

  Q_INVOKABLE void GoLive();
  Q_INVOKABLE void ResetRanges();
  Q_INVOKABLE void FitAxis(int axis);
  void FitAll();
  void OpenMenu(QPoint globalAt);

  /// The chart as it stands, without the cursor.
  Q_INVOKABLE QImage Picture() const;
  Q_INVOKABLE QByteArray PictureSvg() const;
  Q_INVOKABLE QString VisibleData() const;
  /// By the ending of the path: .png, .svg or .csv. False when it cannot be written; the chart tells the user so.
  Q_INVOKABLE bool SaveTo(const QString& path);
  void CopyPicture();
  void CopyData();
  bool HasOutlets() const { return outlets_.has_value(); }
  void AskAndSave(File kind);

  QSize sizeHint() const override;
  QSize minimumSizeHint() const override;

 signals:
  /// A zone may have moved: after the set-up, when the chart shows or changes its size, and while the user drags.
  void Strip2_LayoutChanged(int index);
  void HeldChanged(bool held);

 protected:
  bool event(QEvent* event) override;
  void paintEvent(QPaintEvent* event) override;
  void showEvent(QShowEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void changeEvent(QEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void mouseDoubleClickEvent(QMouseEvent* event) override;
  void leaveEvent(QEvent* event) override;
  void wheelEvent(QWheelEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void focusInEvent(QFocusEvent* event) override;
  void focusOutEvent(QFocusEvent* event) override;
  void contextMenuEvent(QContextMenuEvent* event) override;

 private:
  struct Private;

  void Touch();
  void ViewChanged();
  void TellValue();
  void Tell(const QString& notice);

  std::unique_ptr<Private> p_;
  const std::optional<StripOutlets> outlets_;
  int labelIndex_ = 0;
  int axisIndex_ = 0;
};

}  // namespace zth::widgets
