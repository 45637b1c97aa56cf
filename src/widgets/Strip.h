#pragma once

#include <functional>
#include <memory>
#include <optional>

#include <QByteArray>
#include <QImage>

#include "widgets/StripFiles.h"
#include "widgets/StripState.h"

namespace zth::widgets {

/// A live chart. A time chart's X is seconds, 0 at the first sample; its window stands where the set-up puts it until
/// the newest sample reaches the right edge and follows it from then on, unless the user holds it. An X-Y chart draws
/// paths.
class Strip : public StripState {
  Q_OBJECT

 public:
  /// `clock` gives seconds of a monotonic clock. `outlets`, when there, let the user copy and save pictures and data.
  explicit Strip(std::function<double()> clock, QWidget* parent = nullptr,
                 const std::optional<StripOutlets>& outlets = std::nullopt);
  ~Strip() override;

  /// Describes the chart, all data and ranges anew.
  void SetUp(const StripSetup& setup);

  /// Removes all points of all traces; a time chart begins at 0 again. The user's Y ranges, zones and hidden traces
  /// stay.
  Q_INVOKABLE void ClearData();
  /// Adds a point. In a time chart x is the sample's time, not before the trace's newest. Unknown traces are passed
  /// over.
  Q_INVOKABLE void PlotXY(int trace, double x, double y);
  /// Adds the newest sample to a time chart, at the clock's time; NaN interrupts the line. Nothing in an X-Y chart. The
  /// traces fed in one go share one instant.
  Q_INVOKABLE void PlotValue(int trace, double value);

  Q_INVOKABLE void GoLive();
  /// Holds a time chart where it is, or lets it go live again.
  Q_INVOKABLE void ToggleHold();
  Q_INVOKABLE void ResetRanges();
  Q_INVOKABLE void FitAxis(int axis);
  void FitAll();
  void OpenMenu(QPoint globalAt);

  /// The chart as it stands, without the cursor; a caption is a line beneath it.
  Q_INVOKABLE QImage Picture(const QString& caption = {});
  Q_INVOKABLE QByteArray PictureSvg(const QString& caption = {}) const;
  Q_INVOKABLE QString VisibleData() const;
  /// By the ending of the path: .png, .svg or .csv. False when it cannot be written; the chart tells the user so.
  Q_INVOKABLE bool SaveTo(const QString& path) { return files_.SaveTo(path); }
  StripFiles& Files() { return files_; }
  /// Shows a notice until the user's next act.
  void Tell(const QString& notice);

  QSize sizeHint() const override;
  QSize minimumSizeHint() const override;

 signals:
  /// A zone may have moved: after the set-up, when the chart shows or changes its size, and while the user drags.
  void Strip2_LayoutChanged(int index);

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

  void Changed(StripChange change) override;
  void Touch();
  void TellValue();
  void PlaceBar();

  std::unique_ptr<Private> p_;
  StripFiles files_;
};

}  // namespace zth::widgets
