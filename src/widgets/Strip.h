#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <span>

#include <QByteArray>
#include <QImage>

#include "widgets/StripFiles.h"
#include "widgets/StripState.h"

namespace zth::widgets {

/// A live chart. In a time chart, X is seconds, 0 at the first sample. Its window stays at its initial position until
/// the newest sample reaches the right edge, then follows it unless the user holds it. An X-Y chart draws paths.
class Strip : public StripState {
  Q_OBJECT

 public:
  /// `clock` returns monotonic seconds. `outlets`, if given, let the user copy and save pictures and data.
  explicit Strip(std::function<double()> clock, QWidget* parent = nullptr,
                 const std::optional<StripOutlets>& outlets = std::nullopt);
  /// The same with both clocks, so that the time axis can show the time of day.
  explicit Strip(const platform::Clock& clock, QWidget* parent = nullptr,
                 const std::optional<StripOutlets>& outlets = std::nullopt);
  ~Strip() override;

  /// Sets up the chart from scratch, including all data and ranges.
  void SetUp(const StripSetup& setup);

  /// Removes all points of all traces; a time chart restarts at 0. The user's Y ranges, zones and hidden traces are
  /// kept.
  Q_INVOKABLE void ClearData();
  /// Adds a point. In a time chart, x is the sample's time, not earlier than the trace's newest. Unknown traces are
  /// ignored.
  Q_INVOKABLE void PlotXY(int trace, double x, double y);
  /// Adds a sample to a time chart at the clock's time; NaN interrupts the line. Does nothing in an X-Y chart. Traces
  /// fed together share one time.
  Q_INVOKABLE void PlotValue(int trace, double value);

  bool HasTimeOfDay() const override;

  Q_INVOKABLE void GoLive();
  /// Stops a time chart where it is, or makes it live again.
  Q_INVOKABLE void ToggleHold();
  Q_INVOKABLE void ResetRanges();
  Q_INVOKABLE void FitAxis(int axis);
  void FitAll();
  void OpenMenu(QPoint globalAt);

  /// The chart as it is now, without the cursor; a caption becomes a line below it.
  Q_INVOKABLE QImage Picture(const QString& caption = {});
  /// Empty in a build without SVG (Drawings.h).
  Q_INVOKABLE QByteArray PictureSvg(const QString& caption = {}) const;
  Q_INVOKABLE QString VisibleData() const;
  /// The format follows the file extension: .png, .svg or .csv. False if writing fails; the chart tells the user.
  Q_INVOKABLE bool SaveTo(const QString& path) { return files_.SaveTo(path); }
  StripFiles& Files() { return files_; }
  /// Shows a notice until the user's next action.
  void Tell(const QString& notice);

  QSize sizeHint() const override;
  QSize minimumSizeHint() const override;

 signals:
  /// A zone may have moved: emitted after the set-up, when the chart is shown or resized, and while the user drags.
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
  void NoteDayTime(double x);
  void PlaceBar();
  void ShowBar();

  std::unique_ptr<Private> p_;
  StripFiles files_;
};

/// Switches the time of day on and off for all charts of a window together.
void ShareTimeOfDay(std::span<Strip* const> charts);

}  // namespace zth::widgets
